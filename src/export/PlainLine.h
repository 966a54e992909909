#pragma once

#include <QString>
#include <QStringView>

// Free text for the documents that carry Unicode (Final Cut Pro XML, spreadsheets, subtitles):
// every character is kept except what would break a one-line field or an XML document. Control
// characters and line or paragraph separators become spaces, lone surrogates and the two
// non-characters U+FFFE/U+FFFF are dropped, and runs of white space shrink to one space with
// none at either end.
QString plainLine(QStringView text);
