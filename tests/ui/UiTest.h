#pragma once

#include <QList>
#include <QPushButton>
#include <QString>
#include <QTest>
#include <algorithm>

// How long a screen test waits for what it expects. A met wait ends at once; the limits are
// generous because HTTP, the keyring, ffmpeg and window events share a two-core machine with
// other test programs.
constexpr int screenWait = 30000;
constexpr int toolWait = 60000; // ffmpeg and ffprobe runs

// The first of `items` (widgets or actions) showing `text`, or null.
template <typename Item>
Item *withText(const QList<Item *> &items, const QString &text)
{
    const auto found = std::find_if(items.cbegin(), items.cend(), [&](const Item *item) { return item->text() == text; });
    return found == items.cend() ? nullptr : *found;
}

template <typename Widget = QPushButton>
Widget *withText(const QObject *root, const QString &text)
{
    return withText(root->findChildren<Widget *>(), text);
}
