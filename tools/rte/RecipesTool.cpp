#include "RecipesTool.h"

#include <Core/Common/Recipes/RecipeContextRegistry.h>
#include <Core/Common/Recipes/Recipes.h>
#include <Core/Common/Storage/SettingsDocument.h>

#include <QFileInfo>

#include <array>

namespace
{

using CheckResult = RTE::RecipeContext::CheckResult;

struct Preset
{
  const char* name;
  double first;
  int second;
};

// A module with two values, saved as "<file>" in its subfolder. The values in memory
// are what the module would be running with; activation loads them from the recipe.
class DemoContext : public RTE::RecipeContext
{
public:
  DemoContext(QString name, QString file, QString firstKey, QString secondKey, int order, std::array<Preset, 3> presets,
              double warnAbove) :
      m_name(std::move(name)),
      m_file(std::move(file)),
      m_firstKey(std::move(firstKey)),
      m_secondKey(std::move(secondKey)),
      m_order(order),
      m_presets(presets),
      m_warnAbove(warnAbove)
  {
  }

  QString name() const override { return m_name; }
  QString displayName() const override { return m_name + QStringLiteral(" settings"); }
  int activationOrder() const override { return m_order; }

  QString summary(const QString& folder) const override
  {
    Storage::SettingsDocument document(path(folder), Storage::AutoSync::LoadOnly);
    if (!document.Contains(m_firstKey))
      return m_name + QStringLiteral(": no data");
    return QStringLiteral("%1: preset %2, %3 %4, %5 %6")
        .arg(m_name, document.Get<QString>(QStringLiteral("Preset"), QString()), m_firstKey)
        .arg(document.Get<double>(m_firstKey, 0.0))
        .arg(m_secondKey)
        .arg(document.Get<int>(m_secondKey, 0));
  }

  CheckResult checkActivateOk(const QString& folder, int, QStringList& messages) override
  {
    Storage::SettingsDocument document(path(folder), Storage::AutoSync::Off);
    if (!document.Load())
    {
      messages << QStringLiteral("%1: %2 is missing or damaged").arg(m_name, m_file);
      return CheckResult::Error;
    }
    if (document.HasReports())
    {
      messages << QStringLiteral("%1: %2 holds values of unexpected types").arg(m_name, m_file);
      return CheckResult::Warning;
    }
    return CheckResult::Ok;
  }

  QStringList prepareActivate(const QString&, int) override { return {}; }

  QStringList activate(const QString& folder, int) override
  {
    Storage::SettingsDocument document(path(folder), Storage::AutoSync::LoadOnly);
    m_first = document.Get<double>(m_firstKey, m_first);
    m_second = document.Get<int>(m_secondKey, m_second);
    QStringList warnings;
    if (m_first > m_warnAbove)
      warnings
          << QStringLiteral("%1 %2 is above %3: check before starting").arg(m_firstKey).arg(m_first).arg(m_warnAbove);
    return warnings;
  }

  CheckResult checkSaveOk(const QString& selectionText, int, QStringList& messages) override
  {
    if (preset(selectionText))
      return CheckResult::Ok;
    messages << QStringLiteral("%1: unknown preset '%2' (default, fast, precise)").arg(m_name, selectionText);
    return CheckResult::Error;
  }

  QStringList prepareSave(const QString& selectionText, int) override
  {
    if (const Preset* chosen = preset(selectionText))
    {
      m_preset = QString::fromLatin1(chosen->name);
      m_first = chosen->first;
      m_second = chosen->second;
    }
    return {};
  }

  QStringList save(const QString& folder, const QString&, int) override
  {
    Storage::SettingsDocument document;
    document.SetClass(m_name);
    document.Set(QStringLiteral("Preset"), m_preset);
    document.Set(m_firstKey, m_first);
    document.Set(m_secondKey, m_second);
    if (!document.SaveAs(path(folder)))
      return {QStringLiteral("could not write %1").arg(path(folder))};
    return {};
  }

private:
  QString path(const QString& folder) const { return folder + QLatin1Char('/') + m_file; }

  const Preset* preset(const QString& text) const
  {
    const QString wanted = text.isEmpty() ? QStringLiteral("default") : text;
    for (const Preset& p : m_presets)
      if (wanted.compare(QLatin1String(p.name), Qt::CaseInsensitive) == 0)
        return &p;
    return nullptr;
  }

  QString m_name;
  QString m_file;
  QString m_firstKey;
  QString m_secondKey;
  int m_order;
  std::array<Preset, 3> m_presets;
  double m_warnAbove;
  QString m_preset = QStringLiteral("default");
  double m_first = 0.0;
  int m_second = 0;
};

} // namespace

namespace rte
{

void registerDemoRecipeContexts()
{
  RTE::RecipeContextRegistry& registry = RTE::recipeContextRegistry();
  if (!registry.contains(QStringLiteral("Camera")))
    registry.add(std::make_unique<DemoContext>(
        QStringLiteral("Camera"), QStringLiteral("camera.xml"), QStringLiteral("ExposureMs"), QStringLiteral("Gain"),
        10, std::array<Preset, 3>{Preset{"default", 10.0, 1}, Preset{"fast", 0.5, 4}, Preset{"precise", 40.0, 1}},
        30.0));
  // The laser follows the camera: activation runs higher orders first.
  if (!registry.contains(QStringLiteral("Laser")))
    registry.add(std::make_unique<DemoContext>(
        QStringLiteral("Laser"), QStringLiteral("laser.xml"), QStringLiteral("PowerPercent"), QStringLiteral("Pulses"),
        5, std::array<Preset, 3>{Preset{"default", 50.0, 1}, Preset{"fast", 90.0, 2}, Preset{"precise", 30.0, 8}},
        80.0));
}

void showRecipeProgress(RTE::Recipes& recipes, QTextStream& out)
{
  QObject::connect(&recipes, &RTE::Recipes::prepareProgess,
                   [&out](unsigned count, unsigned index, const QString& name)
                   { out << QStringLiteral("  [%1/%2] prepared %3\n").arg(index).arg(count).arg(name); });
  QObject::connect(&recipes, &RTE::Recipes::prepareWarning,
                   [&out](const QString& name, const QString& warning)
                   { out << QStringLiteral("  warning from %1: %2\n").arg(name, warning); });
  QObject::connect(&recipes, &RTE::Recipes::activationProgess,
                   [&out](unsigned count, unsigned index, const QString& name)
                   { out << QStringLiteral("  [%1/%2] activated %3\n").arg(index).arg(count).arg(name); });
  QObject::connect(&recipes, &RTE::Recipes::activationWarning,
                   [&out](const QString& name, const QString& warning)
                   { out << QStringLiteral("  warning from %1: %2\n").arg(name, warning); });
}

} // namespace rte
