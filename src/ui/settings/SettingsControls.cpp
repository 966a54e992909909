#include "ui/settings/SettingsControls.h"

#include "state/AppState.h"
#include "ui/settings/SettingsActions.h"
#include "ui/settings/SettingsLogic.h"
#include "ui/widgets/ElidedLabel.h"
#include "ui/widgets/Icons.h"
#include "ui/widgets/Theme.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace SettingsControls {
namespace {

template <typename Value, typename Signal>
QComboBox *picker(AppState &state, const QList<SettingsLogic::Choice<Value>> &choices, std::function<Value()> current,
                  std::function<void(Value)> choose, Signal changed)
{
    auto *combo = new QComboBox;
    combo->setFont(Theme::font(Theme::TextStyle::Body));
    for (const auto &choice : choices)
        combo->addItem(choice.label, QVariant::fromValue(choice.value));
    const auto show = [combo, current] {
        const QSignalBlocker blocker(combo);
        combo->setCurrentIndex(combo->findData(QVariant::fromValue(current())));
    };
    show();
    QObject::connect(&state, changed, combo, show);
    QObject::connect(combo, &QComboBox::activated, combo, [combo, choose](int index) {
        choose(combo->itemData(index).template value<Value>());
    });
    return combo;
}

} // namespace

QWidget *themeSegments(AppState &state)
{
    auto *control = new QWidget;
    control->setObjectName(QStringLiteral("themeSegments"));
    auto *row = new QHBoxLayout(control);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    auto *group = new QButtonGroup(control);
    const auto &choices = SettingsLogic::themeChoices();
    for (qsizetype i = 0; i < choices.size(); ++i) {
        auto *segment = new QPushButton(choices.at(i).label);
        segment->setObjectName(QStringLiteral("theme-") + choices.at(i).value);
        segment->setCheckable(true);
        segment->setCursor(Qt::PointingHandCursor);
        segment->setFont(Theme::font(Theme::TextStyle::Caption, QFont::Medium));
        segment->setProperty("segment", i == 0 ? "first" : i == choices.size() - 1 ? "last" : "middle");
        group->addButton(segment, int(i));
        row->addWidget(segment, 1);
    }
    control->setFixedWidth(240);
    const auto show = [&state, group, choices] {
        for (qsizetype i = 0; i < choices.size(); ++i)
            group->button(int(i))->setChecked(choices.at(i).value == state.appearance());
    };
    show();
    QObject::connect(&state, &AppState::appearanceChanged, control, show);
    QObject::connect(group, &QButtonGroup::idClicked, control, [&state, choices](int id) {
        SettingsActions::setTheme(state, choices.at(id).value);
    });
    return control;
}

QComboBox *themePicker(AppState &state)
{
    return picker<QString>(state, SettingsLogic::themeChoices(), [&state] { return state.appearance(); },
                           [&state](const QString &value) { SettingsActions::setTheme(state, value); }, &AppState::appearanceChanged);
}

QComboBox *nlePicker(AppState &state)
{
    return picker<QString>(state, SettingsLogic::nleChoices(), [&state] { return state.preferredNLE(); },
                           [&state](const QString &value) { SettingsActions::setPreferredNLE(state, value); },
                           &AppState::preferredNLEChanged);
}

QComboBox *frameRatePicker(AppState &state)
{
    return picker<int>(state, SettingsLogic::frameRateChoices(), [&state] { return state.defaultFps(); },
                       [&state](int value) { SettingsActions::setDefaultFps(state, value); }, &AppState::defaultFpsChanged);
}

QWidget *folderRow(AppState &state, const QString &path, const FolderRowLook &look)
{
    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, look.verticalPadding, 0, look.verticalPadding);
    layout->setSpacing(8);
    auto *icon = new QLabel;
    icon->setPixmap(Icons::pixmap(look.icon, 14, look.iconColor, row->devicePixelRatioF()));
    auto *text = new ElidedLabel(Qt::ElideMiddle);
    text->setFont(Theme::font(Theme::TextStyle::Caption));
    text->setText(path);
    auto *remove = new QPushButton;
    remove->setObjectName(look.removeButtonName);
    remove->setFlat(true);
    remove->setCursor(Qt::PointingHandCursor);
    remove->setIcon(Icons::symbol(look.removeIcon, look.removeColor));
    remove->setIconSize(QSize(14, 14));
    remove->setStyleSheet(QStringLiteral("QPushButton { border: none; background: transparent; padding: 0; }"));
    QObject::connect(remove, &QPushButton::clicked, row, [&state, path] { state.removeFootageFolder(path); });
    layout->addWidget(icon);
    layout->addWidget(text, 1);
    layout->addWidget(remove);
    return row;
}

} // namespace SettingsControls
