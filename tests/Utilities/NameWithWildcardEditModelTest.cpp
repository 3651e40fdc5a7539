#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Storage/SettingsStringBasedDocument.h>
#include <Core/Common/Utilities/NameWithWildcardEditModel.h>

#include "OperatingSystem/TestHelpers.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace
{

using RTE::NameWithWildcardEditModel;

QStringList list(std::initializer_list<const char*> texts)
{
  QStringList out;
  for (const char* text : texts)
    out.append(QString::fromUtf8(text));
  return out;
}

// Collects the model tester's warnings (its debug lines trace every signal).
class TesterWarnings
{
public:
  TesterWarnings() { m_previous = qInstallMessageHandler(&TesterWarnings::handler); }
  ~TesterWarnings() { qInstallMessageHandler(m_previous); }
  TesterWarnings(const TesterWarnings&) = delete;
  TesterWarnings& operator=(const TesterWarnings&) = delete;
  static QStringList& messages()
  {
    static QStringList list;
    return list;
  }

private:
  static void handler(QtMsgType type, const QMessageLogContext& context, const QString& message)
  {
    if (type != QtDebugMsg && type != QtInfoMsg && context.category != nullptr &&
        QByteArrayView(context.category).startsWith("qt."))
      messages().append(message);
  }
  QtMessageHandler m_previous = nullptr;
};

TEST(NameWithWildcardEditModel, PassesTheModelTesterThroughEveryEdit)
{
  TesterWarnings warnings;
  warnings.messages().clear();
  NameWithWildcardEditModel model;
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Warning);

  model.appendName(QStringLiteral("Camera*"));
  model.insertName(0, QStringLiteral("Laser?"));
  model.appendName(QStringLiteral("Engine 2"));
  EXPECT_TRUE(model.setData(model.index(2), QStringLiteral("Engine ?")));
  EXPECT_TRUE(model.removeRows(0, 2));
  model.setNames(list({"A*", "B*", "C*"}));
  EXPECT_TRUE(model.removeName(QStringLiteral("b*")));
  EXPECT_EQ(model.names(), list({"A*", "C*"}));
  EXPECT_TRUE(warnings.messages().isEmpty()) << warnings.messages().join(u'\n').toStdString();
}

TEST(NameWithWildcardEditModel, EditsSignalExactlyWhatChanged)
{
  NameWithWildcardEditModel model(list({"Camera*", "Laser?"}));
  QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
  QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
  QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);

  model.insertName(1, QStringLiteral("  Engine*  "));
  ASSERT_EQ(inserted.count(), 1);
  EXPECT_EQ(inserted[0][1].toInt(), 1);
  EXPECT_EQ(inserted[0][2].toInt(), 1);
  EXPECT_EQ(model.data(model.index(1)).toString(), QStringLiteral("Engine*")); // trimmed
  EXPECT_EQ(model.data(model.index(1), Qt::EditRole).toString(), QStringLiteral("Engine*"));
  EXPECT_TRUE(model.flags(model.index(1)).testFlag(Qt::ItemIsEditable));

  // Renaming to another case of the same name is allowed; setting the same text is no change.
  EXPECT_TRUE(model.setData(model.index(0), QStringLiteral("camera*")));
  ASSERT_EQ(changed.count(), 1);
  EXPECT_EQ(changed[0][0].value<QModelIndex>(), model.index(0));
  EXPECT_TRUE(model.setData(model.index(0), QStringLiteral("camera*")));
  EXPECT_EQ(changed.count(), 1);

  // Rejected edits change nothing and signal nothing.
  EXPECT_FALSE(model.setData(model.index(0), QStringLiteral("LASER?")));
  EXPECT_FALSE(model.setData(model.index(0), QStringLiteral("   ")));
  EXPECT_FALSE(model.setData(model.index(0), QStringLiteral("Camera[12]")));
  EXPECT_FALSE(model.setData(model.index(0), QStringLiteral("Cam"), Qt::ToolTipRole));
  EXPECT_FALSE(model.setData(model.index(3), QStringLiteral("Cam")));
  EXPECT_FALSE(model.removeRows(2, 2));
  EXPECT_FALSE(model.insertRows(0, 1)); // rows come only with their names
  EXPECT_EQ(changed.count(), 1);
  EXPECT_EQ(removed.count(), 0);
  EXPECT_EQ(model.names(), list({"camera*", "Engine*", "Laser?"}));

  EXPECT_FALSE(model.removeName(QStringLiteral("Nothing")));
  EXPECT_TRUE(model.removeName(QStringLiteral("ENGINE*")));
  ASSERT_EQ(removed.count(), 1);
  EXPECT_EQ(removed[0][1].toInt(), 1);
}

TEST(NameWithWildcardEditModel, RejectsInvalidAndDuplicateNamesWithTheirReason)
{
  NameWithWildcardEditModel model(list({"Camera*"}));
  struct Case
  {
    const char* name;
    const char* reasonPart;
  };
  const Case cases[] = {
      {"", "empty"},
      {" \t ", "empty"},
      {"Cam[era]", "'['"},
      {"Cam]", "']'"},
      {"Lab/Camera", "'/'"},
      {"Lab\\Camera", "'\\'"},
      {"Cam\nera", "U+000A"},
      {"CAMERA*", "already in the list as 'Camera*'"},
      {" camera* ", "already in the list"},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.name);
    const QString name = QString::fromUtf8(c.name);
    EXPECT_TRUE(model.validationError(name).contains(QString::fromUtf8(c.reasonPart)))
        << model.validationError(name).toStdString();
    EXPECT_EQ(MessageOf<RTE::InvalidArgumentError>([&] { model.appendName(name); }), model.validationError(name));
  }
  EXPECT_EQ(model.validationError(QStringLiteral("CAMERA*"), 0), QString()); // its own row
  EXPECT_EQ(model.validationError(QStringLiteral("Kamera 1 (links)")), QString());
  EXPECT_THROW(model.insertName(2, QStringLiteral("Laser")), RTE::OutOfRangeError);
  EXPECT_THROW(model.insertName(-1, QStringLiteral("Laser")), RTE::OutOfRangeError);

  // setNames is all or nothing, duplicates within the new list included.
  QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
  EXPECT_THROW(model.setNames(list({"A", "B", "a"})), RTE::InvalidArgumentError);
  EXPECT_EQ(reset.count(), 0);
  EXPECT_EQ(model.names(), list({"Camera*"}));
}

TEST(NameWithWildcardEditModel, AnswersWhichEntriesMatchAName)
{
  const NameWithWildcardEditModel model(list({"Camera*", "Laser?", "Engine 2", "*"}));
  EXPECT_EQ(model.matchingEntries(QStringLiteral("camera 12")), list({"Camera*", "*"}));
  EXPECT_EQ(model.matchingRows(QStringLiteral("LASER7")), (QList<int>{1, 3}));
  EXPECT_EQ(model.matchingEntries(QStringLiteral("Laser12")), list({"*"})); // '?' is one character
  EXPECT_EQ(model.matchingEntries(QStringLiteral("engine 2")), list({"Engine 2", "*"}));
  EXPECT_EQ(model.matchingEntries(QStringLiteral("Engine 22")), list({"*"})); // whole name only
  EXPECT_EQ(model.matchingEntries(QStringLiteral("Camera")), list({"Camera*", "*"}));

  const NameWithWildcardEditModel specific(list({"Cam.ra+", "(Laser)"}));
  EXPECT_FALSE(specific.matches(QStringLiteral("Camera+"))); // regular-expression characters are literal
  EXPECT_TRUE(specific.matches(QStringLiteral("cam.RA+")));
  EXPECT_TRUE(specific.matches(QStringLiteral("(laser)")));
  EXPECT_FALSE(specific.matches(QStringLiteral("Laser")));
  EXPECT_FALSE(NameWithWildcardEditModel().matches(QStringLiteral("anything")));
}

TEST(NameWithWildcardEditModel, StoresItselfInSettings)
{
  Storage::SettingsStringBasedDocument document;
  NameWithWildcardEditModel model(list({"Camera*", "Laser?"}));
  model.SerializeTo(*document.CreateNode(QStringLiteral("Devices")));
  const QString text = document.GetContent();
  EXPECT_TRUE(text.contains(QStringLiteral("<Devices class=\"NameWithWildcardEditModel\" version=\"1\">")))
      << text.toStdString();
  EXPECT_TRUE(text.contains(QStringLiteral("<Name index=\"1\" class=\"string\" value=\"Laser?\" />")))
      << text.toStdString();

  // Writing again replaces the items instead of appending to them.
  model.setNames(list({"Engine*"}));
  model.SerializeTo(*document.GetNode(QStringLiteral("Devices")));
  NameWithWildcardEditModel read(list({"Old"}));
  QSignalSpy reset(&read, &QAbstractItemModel::modelReset);
  read.DeserializeFrom(*document.GetNode(QStringLiteral("Devices")));
  EXPECT_EQ(read.names(), list({"Engine*"}));
  EXPECT_EQ(reset.count(), 1);
  EXPECT_FALSE(document.HasReports());

  // Bad items are left out and reported; another class or version gives an empty list.
  Storage::SettingsStringBasedDocument edited(QStringLiteral(
      "<root><Devices class=\"NameWithWildcardEditModel\" version=\"1\">"
      "<Name index=\"0\" class=\"string\" value=\"Camera*\"/><Name index=\"1\" class=\"string\" value=\"CAMERA*\"/>"
      "<Name index=\"2\" class=\"string\" value=\"\"/><Name index=\"3\" class=\"string\" value=\"Laser[1]\"/>"
      "<Name index=\"4\" class=\"string\" value=\"Laser 1\"/></Devices>"
      "<Newer class=\"NameWithWildcardEditModel\" version=\"2\"><Name index=\"0\" class=\"string\" value=\"A\"/>"
      "</Newer><Other class=\"list\" version=\"1\"><Name index=\"0\" class=\"string\" value=\"A\"/></Other></root>"));
  read.DeserializeFrom(*edited.GetNode(QStringLiteral("Devices")));
  EXPECT_EQ(read.names(), list({"Camera*", "Laser 1"}));
  EXPECT_TRUE(edited.HasReports());
  read.DeserializeFrom(*edited.GetNode(QStringLiteral("Newer")));
  EXPECT_TRUE(read.names().isEmpty());
  read.setNames(list({"X"}));
  read.DeserializeFrom(*edited.GetNode(QStringLiteral("Other")));
  EXPECT_TRUE(read.names().isEmpty());
}

} // namespace
