#pragma once

#include <QString>

// Expected documents, written out line by line from the layouts of each format, for the
// sessions built in ExportDocumentsTest.cpp.
namespace Expected {
extern const QString xmlNoClips;
extern const QString xmlEmpty;
extern const QString xmlClips;
extern const QString selects;
extern const QString otioEmpty;
extern const QString otioGap;
extern const QString otioClips;
extern const QString script;
extern const QString instructions;
} // namespace Expected
