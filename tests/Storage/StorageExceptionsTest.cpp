#include <Core/Common/Storage/StorageExceptions.h>

#include "StorageTestHelpers.h"

#include <gtest/gtest.h>

#include <functional>

TEST(StorageExceptions, MessagesAndData)
{
  const struct
  {
    const char* what;
    std::function<RTE::Exception()> make;
    const char* message;
  } cases[] = {
      {"storage", [] { return Storage::StorageError(QStringLiteral("disk")); }, "disk"},
      {"settings", [] { return Storage::SettingsError(QStringLiteral("Bad"), QStringLiteral("gain")); },
       "Bad (Setting name: 'gain')"},
      {"not existing", [] { return Storage::NotExistingSetting(QStringLiteral("gain"), false, 0); },
       "Not existing setting error. (Setting name: 'gain')"},
      {"wrong class",
       [] { return Storage::SettingHasWrongClass(QStringLiteral("p"), QStringLiteral("a"), QStringLiteral("b")); },
       "Setting has wrong class. (Setting name: 'p')"},
      {"invalid name", [] { return Storage::InvalidSettingsName(QStringLiteral("9lives")); },
       "Invalid settings name error. (Setting name: '9lives')"},
      {"invalid value", [] { return Storage::InvalidValue(QStringLiteral("Camera"), QStringLiteral("Mode")); },
       "Found invalid/unsupported value in Camera.Mode (Setting name: '')"},
      {"placeholders in data", [] { return Storage::InvalidValue(QStringLiteral("%2"), QStringLiteral("%1")); },
       "Found invalid/unsupported value in %2.%1 (Setting name: '')"},
      {"invalid version", [] { return Storage::InvalidVersion(QStringLiteral("Camera"), 7); },
       "Invalid/unsupported version (Setting name: '')"},
      {"file", [] { return Storage::StorageFileError(QStringLiteral("Cannot read"), QStringLiteral("a.xml")); },
       "Cannot read (File: a.xml)"},
      {"scope", [] { return Storage::InvalidScopeOrContext(QStringLiteral("Unknown Scope.")); }, "Unknown Scope."},
      {"empty", [] { return Storage::EmptyObjectError(); }, "Empty object"},
      {"node type", [] { return Storage::UnsupportedNodeTypeError(QStringLiteral("comment")); }, "comment"},
  };
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.make().message(), QString::fromUtf8(c.message));
  }

  // A new name is part of the message from then on.
  Storage::SettingsError renamed(QStringLiteral("Bad"), QStringLiteral("a"));
  renamed.SetName(QStringLiteral("b"));
  EXPECT_EQ(renamed.message(), QStringLiteral("Bad (Setting name: 'b')"));

  // The family is caught through its bases across the library boundary.
  bool caught = false;
  try
  {
    (void)Storage::SettingsStringBasedDocument().GetNode(QStringLiteral("gain"));
  }
  catch (const Storage::StorageError& e)
  {
    caught = dynamic_cast<const Storage::NotExistingSetting*>(&e) != nullptr;
  }
  EXPECT_TRUE(caught);
}
