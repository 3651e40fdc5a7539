// Helpers shared by the storage suites.
#pragma once

#include <Core/Common/Storage/SettingsStringBasedDocument.h>

#include <QString>

#include <memory>
#include <ostream>

// Readable QString values in failure messages.
inline void PrintTo(const QString& text, std::ostream* os)
{
  *os << '"' << text.toStdString() << '"';
}

// A document over an inline settings text, "<root>" included.
inline std::unique_ptr<Storage::SettingsStringBasedDocument> parseSettings(const char* xml)
{
  return std::make_unique<Storage::SettingsStringBasedDocument>(QString::fromUtf8(xml));
}
