#pragma once

#include <QString>

// The login screen's input rules; they act only through the enabling of its buttons.
namespace LoginRules {
// Spaces and tabs at both ends aside, at least one "@" and one "." anywhere.
bool isValidEmail(const QString &text);
// Exactly six user-perceived characters, each a numeric character of any script.
bool isValidCode(const QString &text);
} // namespace LoginRules
