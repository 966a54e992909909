// The transcript of a long interview: 5,000 utterances, laid out in a scroll area the size of
// the detail screen, then the visible part painted. Two shapes: a conversation whose speakers
// change every few utterances (about a thousand runs), and a marker-built transcript, which is
// one single run.
#include "ui/transcript/SelectsModel.h"
#include "ui/transcript/TranscriptView.h"

#include <QImage>
#include <QLayout>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <benchmark/benchmark.h>
#include <memory>

namespace {

constexpr int utteranceCount = 5000;
const QSize screenSize(800, 600);

QList<TranscriptSegment> makeInterview(bool oneRun)
{
    static const QStringList words = QStringLiteral(
        "we went down to the harbour early that morning and the light was still soft over the "
        "water so my father said let us take the small boat out before the wind picks up")
        .split(u' ');
    QList<TranscriptSegment> segments;
    segments.reserve(utteranceCount);
    int speaker = 0;
    for (int i = 0; i < utteranceCount; ++i) {
        if (!oneRun && i % 5 == (i / 5) % 3)
            speaker = (speaker + 1) % 3;
        TranscriptSegment s;
        s.id = QStringLiteral("seg-%1").arg(i, 5, 10, QChar(u'0'));
        s.speaker = oneRun ? QString() : QStringLiteral("SPEAKER %1").arg(QChar(u'A' + speaker));
        const int length = 4 + (i * 7) % 22;
        QStringList sentence;
        for (int w = 0; w < length; ++w)
            sentence.append(words[(i * 3 + w) % words.size()]);
        s.text = sentence.join(u' ') + u'.';
        s.timecode = QStringLiteral("10:%1:%2:00").arg(i / 1200 % 60, 2, 10, QChar(u'0'))
                         .arg(i / 20 % 60, 2, 10, QChar(u'0'));
        segments.append(s);
    }
    return segments;
}

struct Screen {
    explicit Screen(const QList<TranscriptSegment> &segments)
    {
        auto *view = new TranscriptView(ShootSession{}, &selects,
            [segments](const QString &) -> QCoro::Task<QList<TranscriptSegment>> {
                co_return segments;
            });
        area.setWidgetResizable(true);
        area.setWidget(view);
        area.resize(screenSize);
        area.show();
        // Settle every pending layout pass, and nothing else: painting is measured apart.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        view->layout()->activate();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    }

    SelectsModel selects;
    QScrollArea area;
};

void layoutTranscript(benchmark::State &state)
{
    const QList<TranscriptSegment> segments = makeInterview(state.range(0) == 1);
    int height = 0;
    for (auto _ : state) {
        auto screen = std::make_unique<Screen>(segments);
        height = screen->area.widget()->height();
        state.PauseTiming();
        screen.reset();
        state.ResumeTiming();
    }
    state.counters["height_px"] = height;
}

void paintVisibleTranscript(benchmark::State &state)
{
    Screen screen(makeInterview(state.range(0) == 1));
    QScrollBar *scroll = screen.area.verticalScrollBar();
    scroll->setValue(scroll->maximum() / 2);
    QImage image(screen.area.viewport()->size(), QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        QPainter painter(&image);
        screen.area.viewport()->render(&painter);
    }
    state.counters["scroll_range_px"] = scroll->maximum();
}

// One click on a chip in the middle of the transcript: the selection changes, the chip gains its
// padding so its run reflows, and the visible part is painted again.
void selectAndRepaint(benchmark::State &state)
{
    const QList<TranscriptSegment> segments = makeInterview(state.range(0) == 1);
    Screen screen(segments);
    QScrollBar *scroll = screen.area.verticalScrollBar();
    scroll->setValue(scroll->maximum() / 2);
    QImage image(screen.area.viewport()->size(), QImage::Format_ARGB32_Premultiplied);
    const QString id = segments[utteranceCount / 2].id;
    for (auto _ : state) {
        SegmentSelection selection = screen.selects.selection();
        selection.toggle(id);
        screen.selects.setSelection(selection);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        QPainter painter(&image);
        screen.area.viewport()->render(&painter);
    }
}

} // namespace

BENCHMARK(selectAndRepaint)->ArgName("oneRun")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(layoutTranscript)->ArgName("oneRun")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(paintVisibleTranscript)->ArgName("oneRun")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
