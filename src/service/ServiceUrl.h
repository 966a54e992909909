#pragma once

#include <QString>
#include <optional>

// The service's base URL, chosen once at start: the program's --service-url when given, else
// $VORLIX_SERVICE_URL when set and not empty, else the URL built in (CMake cache variable
// VORLIX_SERVICE_URL). Trailing slashes are dropped, since every request path starts with one.
// The service client and the links to the service's web pages both use it.
QString resolveServiceUrl(const std::optional<QString> &commandLineValue = std::nullopt);
