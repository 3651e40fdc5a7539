// Recipe contexts for the tests: each writes its selection into "data.xml" of its folder
// and reads it back on activation; every call and every store signal goes into one
// ordered log.
#pragma once

#include "Units/QStringPrinter.h"

#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Recipes/RecipeContextRegistry.h>
#include <Core/Common/Recipes/Recipes.h>
#include <Core/Common/Storage/SettingsDocument.h>
#include <Core/Common/Storage/ValueSerialization.h>

#include <QDir>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <ostream>

// Readable failure messages.
namespace RTE
{
inline void PrintTo(const Recipe& recipe, std::ostream* out)
{
  *out << "{" << recipe.id.toString().toStdString() << " \"" << recipe.label.toStdString() << "\" \""
       << recipe.comment.toStdString() << "\" archived " << recipe.archived << " "
       << recipe.archivedTime.toString(Qt::ISODateWithMs).toStdString() << " "
       << recipe.successor.toString().toStdString() << " \"" << recipe.folderName.toStdString() << "\"}";
}
} // namespace RTE

struct EventLog
{
  QStringList events;

  QStringList take()
  {
    QStringList taken = events;
    events.clear();
    return taken;
  }

  void watch(RTE::Recipes& recipes)
  {
    QObject::connect(&recipes, &RTE::Recipes::activationProgess,
                     [this](unsigned c, unsigned i, const QString& n)
                     { events << QStringLiteral("activationProgess(%1,%2,%3)").arg(c).arg(i).arg(n); });
    QObject::connect(&recipes, &RTE::Recipes::activationWarning,
                     [this](const QString& n, const QString& w)
                     { events << QStringLiteral("activationWarning(%1,%2)").arg(n, w); });
    QObject::connect(&recipes, &RTE::Recipes::prepareProgess,
                     [this](unsigned c, unsigned i, const QString& n)
                     { events << QStringLiteral("prepareProgess(%1,%2,%3)").arg(c).arg(i).arg(n); });
    QObject::connect(&recipes, &RTE::Recipes::prepareWarning,
                     [this](const QString& n, const QString& w)
                     { events << QStringLiteral("prepareWarning(%1,%2)").arg(n, w); });
  }
};

class TestContext : public RTE::RecipeContext
{
public:
  TestContext(QString name, int order, EventLog* log = nullptr) : m_name(std::move(name)), m_order(order), m_log(log) {}

  QString name() const override { return m_name; }
  QString displayName() const override { return m_name + QStringLiteral(" context"); }
  int activationOrder() const override { return m_order; }
  QString summary(const QString& folder) const override { return m_name + QLatin1Char(':') + read(folder); }

  CheckResult checkActivateOk(const QString& folder, int flag, QStringList& messages) override
  {
    record(QStringLiteral("checkActivateOk"), folder, flag);
    messages << m_name + QStringLiteral(" checked");
    return checkResult;
  }
  QStringList prepareActivate(const QString& folder, int flag) override
  {
    record(QStringLiteral("prepareActivate"), folder, flag);
    return warnings;
  }
  QStringList activate(const QString& folder, int flag) override
  {
    record(QStringLiteral("activate"), folder, flag);
    activated = read(folder);
    return warnings;
  }
  CheckResult checkSaveOk(const QString& text, int index, QStringList& messages) override
  {
    log(QStringLiteral("checkSaveOk %1 %2 %3").arg(m_name, text).arg(index));
    messages << m_name + QStringLiteral(" checked");
    return checkResult;
  }
  QStringList prepareSave(const QString& text, int index) override
  {
    log(QStringLiteral("prepareSave %1 %2 %3").arg(m_name, text).arg(index));
    return warnings;
  }
  QStringList save(const QString& folder, const QString& text, int index) override
  {
    const QFileInfo info(folder);
    log(QStringLiteral("save %1 %2/%3 %4 %5").arg(m_name, info.dir().dirName(), info.fileName(), text).arg(index));
    if (failSave)
      RTE::Raise(RTE::Exception(QStringLiteral("context failed")));
    Storage::SettingsDocument document;
    document.Set(QStringLiteral("Selection"), text);
    if (!document.SaveAs(folder + QStringLiteral("/data.xml")))
      RTE::Raise(RTE::Exception(QStringLiteral("cannot write")));
    return warnings;
  }

  static QString read(const QString& folder)
  {
    Storage::SettingsDocument document(folder + QStringLiteral("/data.xml"), Storage::AutoSync::LoadOnly);
    return document.Get<QString>(QStringLiteral("Selection"), QStringLiteral("<none>"));
  }

  CheckResult checkResult = CheckResult::Ok;
  QStringList warnings;
  bool failSave = false;
  QString activated;

private:
  void record(const QString& what, const QString& folder, int flag)
  {
    log(QStringLiteral("%1 %2 %3 %4").arg(what, m_name, QFileInfo(folder).fileName()).arg(flag));
  }
  void log(const QString& text)
  {
    if (m_log)
      m_log->events << text;
  }

  QString m_name;
  int m_order;
  EventLog* m_log;
};

// A temporary recipes folder and a registry that is empty again after each test.
class RecipesFixture : public ::testing::Test
{
protected:
  void SetUp() override
  {
    ASSERT_TRUE(m_dir.isValid());
    RTE::recipeContextRegistry().clear();
  }
  void TearDown() override { RTE::recipeContextRegistry().clear(); }

  TestContext* addContext(const QString& name, int order)
  {
    auto context = std::make_unique<TestContext>(name, order, &m_log);
    TestContext* raw = context.get();
    RTE::recipeContextRegistry().add(std::move(context));
    return raw;
  }

  QString folder() const { return m_dir.path(); }

  static RTE::Recipe newRecipe(const QString& label, const QString& folderName = QString())
  {
    RTE::Recipe recipe;
    recipe.id = QUuid::createUuid();
    recipe.label = label;
    recipe.comment = label + QStringLiteral(" comment");
    recipe.folderName = folderName;
    return recipe;
  }

  QTemporaryDir m_dir;
  EventLog m_log;
};

// The message of the RTE::Exception that call throws; empty when it throws none.
template <typename Call>
QString thrownMessage(Call&& call)
{
  try
  {
    call();
  }
  catch (const RTE::Exception& e)
  {
    return e.message();
  }
  return QString();
}
