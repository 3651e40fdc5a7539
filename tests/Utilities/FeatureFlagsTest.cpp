#include "LogCapture.h"
#include "TestFiles.h"

#include <Core/Common/Storage/SettingsDocument.h>
#include <Core/Common/Utilities/FeatureFlags.h>

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

using Service::FeatureFlags;

namespace
{

// The flags object is one per process: every test starts from an empty registry and
// map and leaves the user's file as it found it.
class FeatureFlagsTest : public ::testing::Test
{
protected:
  void SetUp() override
  {
    m_path = m_flags.getStoragePath();
    ASSERT_FALSE(m_path.isEmpty());
    m_saved = readFile(m_path);
    m_existed = QFileInfo::exists(m_path);
    QFile::remove(m_path);
    reset();
  }
  void TearDown() override
  {
    QFile::remove(m_path);
    if (m_existed)
    {
      ASSERT_TRUE(writeFile(m_path, m_saved));
    }
    reset();
  }
  void reset()
  {
    m_flags.clearRegistry();
    m_flags.clearXMLFlags();
    m_flags.readAgain();
  }

  FeatureFlags& m_flags = FeatureFlags::instance();
  QString m_path;
  QByteArray m_saved;
  bool m_existed = false;
};

} // namespace

TEST_F(FeatureFlagsTest, RegistryKeepsFirstRegistrationAndOrderAndProcessOnlyStates)
{
  EXPECT_TRUE(m_path.endsWith(QStringLiteral("/FeatureFlags.xml")));
  m_flags.registerFlag("B", "b label", "b text", "g", true);
  m_flags.registerFlag("A", "a label", "a text", "g", false);
  m_flags.registerFlag("B", "other", "other", "other", false);
  m_flags.registerFlag("C", "c label", "c text", "g", false);
  m_flags.unregisterFlag("A");
  EXPECT_FALSE(m_flags.isFlagRegistered("A"));

  m_flags.setFlag("C", true, false);
  EXPECT_TRUE(m_flags.isValid("C"));
  EXPECT_FALSE(m_flags.isValid("c")) << "names are case-sensitive";
  EXPECT_FALSE(m_flags.isValid("B")) << "the registration default is not the state";
  EXPECT_FALSE(QFileInfo::exists(m_path)) << "a process-only change writes nothing";

  const QList<FeatureFlags::Flag> shown = m_flags.getRegisteredFlagsForUI();
  ASSERT_EQ(shown.size(), 2);
  EXPECT_EQ(shown[0].name, "B");
  EXPECT_EQ(shown[0].label, "b label");
  EXPECT_TRUE(shown[0].defaultValue);
  EXPECT_FALSE(shown[0].state);
  EXPECT_EQ(shown[1].name, "C");
  EXPECT_TRUE(shown[1].state);
  // Every registered name enters the stored flags, off until the user stores a choice.
  EXPECT_EQ(m_flags.getStoredFlags(), (std::map<QString, bool>{{"B", false}, {"C", false}}));
  m_flags.setFlag("C", false, false);
  EXPECT_FALSE(m_flags.isValid("C"));
}

TEST_F(FeatureFlagsTest, StoredChoicesRoundTripThroughTheFileInNameOrder)
{
  EXPECT_FALSE(m_flags.isValid("Unregistered")) << "no file";
  const QByteArray held = "<?xml version=\"1.0\"?>\n<root><FeatureFlags>"
                          "<Item index=\"0\"><Name class=\"string\" value=\"Unregistered\" />"
                          "<Value class=\"bool\" value=\"true\" /></Item>"
                          "<Item index=\"1\"><Name class=\"string\" value=\"Off\" />"
                          "<Value class=\"bool\" value=\"false\" /></Item></FeatureFlags></root>";
  ASSERT_TRUE(writeFile(m_path, held));
  // Without a file nothing was read, so the next query looks again.
  EXPECT_TRUE(m_flags.isValid("Unregistered")) << "a stored flag counts without registration";
  EXPECT_FALSE(m_flags.isValid("Off"));
  QFile::remove(m_path);
  EXPECT_TRUE(m_flags.isValid("Unregistered")) << "a file once read is read again only when asked";
  m_flags.readAgain();
  EXPECT_TRUE(m_flags.isValid("Unregistered")) << "a missing file empties nothing";

  // A store right after start-up must keep what the file held.
  ASSERT_TRUE(writeFile(m_path, held));
  reset();
  m_flags.setFlag("Mid", true, true);
  EXPECT_EQ(m_flags.getStoredFlags(), (std::map<QString, bool>{{"Mid", true}, {"Off", false}, {"Unregistered", true}}));

  Storage::SettingsDocument document(m_path, Storage::AutoSync::LoadOnly);
  const auto root = document.GetNode("FeatureFlags");
  ASSERT_EQ(root->Count("Item"), 3u);
  const char* expected[] = {"Mid", "Off", "Unregistered"};
  for (unsigned long long i = 0; i < 3; ++i)
    EXPECT_EQ(root->GetCollectionNode("Item", i)->Get<QString>("Name", {}), expected[i]);
  EXPECT_TRUE(root->GetCollectionNode("Item", 0)->Get<bool>("Value", false));

  reset();
  EXPECT_TRUE(m_flags.isValid("Mid"));
}

TEST_F(FeatureFlagsTest, DamagedFileIsLoggedNeverThrownAndReadAgainLater)
{
  ASSERT_TRUE(writeFile(m_path, "this is no XML"));
  EXPECT_NO_THROW(EXPECT_FALSE(m_flags.isValid("Anything")));
  // An item without a value reads as off; a gap in the item numbers is an error that
  // keeps the items read before it.
  ASSERT_TRUE(writeFile(m_path, "<?xml version=\"1.0\"?>\n<root><FeatureFlags>"
                                "<Item index=\"0\"><Name class=\"string\" value=\"First\" />"
                                "<Value class=\"bool\" value=\"true\" /></Item>"
                                "<Item index=\"1\"><Name class=\"string\" value=\"NoValue\" /></Item>"
                                "<Item index=\"3\"><Name class=\"string\" value=\"Beyond\" />"
                                "<Value class=\"bool\" value=\"true\" /></Item></FeatureFlags></root>"));
  m_flags.readAgain();
  const LogCapture log("Core.Utilities");
  EXPECT_NO_THROW(EXPECT_TRUE(m_flags.isValid("First")));
  ASSERT_EQ(log.messages().size(), 1);
  EXPECT_TRUE(log.messages()[0].startsWith("Error when reading feature flag file: "))
      << log.messages()[0].toStdString();
  EXPECT_FALSE(m_flags.isValid("NoValue"));
  EXPECT_FALSE(m_flags.isValid("Beyond"));
}
