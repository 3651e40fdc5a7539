#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Recipes/RecipeContextRegistry.h>

#include <QObject>
#include <QRegularExpression>

#include <algorithm>

namespace RTE
{

RecipeContextRegistry::RecipeContextRegistry() = default;
RecipeContextRegistry::~RecipeContextRegistry() = default;

int RecipeContextRegistry::add(std::unique_ptr<RecipeContext> context)
{
  if (!context)
    Raise(Exception(QObject::tr("Bad RecipeContextRegistry::add(): Null context")));
  const QString name = context->name();
  if (!isValidContextName(name))
    Raise(Exception(QObject::tr("Bad RecipeContextRegistry::add(): Invalid context name")));
  if (contains(name))
    Raise(Exception(QObject::tr("Bad RecipeContextRegistry::add(): Context does already exist")));
  m_contexts.push_back(std::move(context));
  return 0;
}

std::vector<std::unique_ptr<RecipeContext>>::const_iterator RecipeContextRegistry::find(const QString& name) const
{
  return std::find_if(m_contexts.begin(), m_contexts.end(),
                      [&](const std::unique_ptr<RecipeContext>& context)
                      { return context->name().compare(name, Qt::CaseInsensitive) == 0; });
}

bool RecipeContextRegistry::contains(const QString& name) const
{
  return find(name) != m_contexts.end();
}

RecipeContext* RecipeContextRegistry::get(const QString& name) const
{
  const auto it = find(name);
  return it == m_contexts.end() ? nullptr : it->get();
}

QStringList RecipeContextRegistry::entries() const
{
  QStringList names;
  names.reserve(static_cast<qsizetype>(m_contexts.size()));
  for (const std::unique_ptr<RecipeContext>& context : m_contexts)
    names.append(context->name());
  return names;
}

void RecipeContextRegistry::remove(const QString& name)
{
  const auto it = find(name);
  if (it != m_contexts.end())
    m_contexts.erase(it);
}

void RecipeContextRegistry::clear()
{
  m_contexts.clear();
}

bool RecipeContextRegistry::isValidContextName(const QString& name)
{
  if (name.isEmpty())
    return false;
  // Built once; the characters are those no folder name may hold on any of our systems.
  static const QRegularExpression pattern(
      QStringLiteral("^[^%1]*$").arg(QRegularExpression::escape(QStringLiteral("/\\:*?\"<>|"))));
  return pattern.match(name).hasMatch();
}

RecipeContextRegistry& recipeContextRegistry()
{
  static RecipeContextRegistry registry;
  return registry;
}

} // namespace RTE
