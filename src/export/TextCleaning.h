#pragma once

#include <QString>
#include <QStringView>

// The cleaning every exported document applies to free text from the service and the file
// system, so that editing applications that only read printable ASCII get something sensible.

// Printable ASCII only, judged per user-perceived character: an "e" carrying a combining accent,
// a CR LF pair or an emoji is dropped whole. At most 200 characters are kept.
QString safeASCII(QStringView text);

// safeASCII, then the five XML special characters escaped; the escaping may take the result past
// 200 characters.
QString safeXML(QStringView text);

// The five XML special characters escaped, nothing dropped.
QString xmlEscaped(QStringView text);

// Backslashes and double quotes escaped for a JSON string. Text that reaches the OTIO writer has
// been through safeASCII or percent-encoding, so no control character is left to escape.
QString jsonEscaped(QStringView text);

// The path of a file URL: the path percent-encoded with the URL path character set (unreserved
// characters, the sub-delimiters, ":", "@" and "/" stay; every other UTF-8 byte becomes %XX),
// starting with "/" even when the path does not (a drive letter, a relative path), so that
// "file://" and a host before it always form a well-formed URL.
QString percentEncodedPath(const QString &path);
