// The process-wide, ordered set of recipe contexts, owned by the registry.
//
//   RTE::recipeContextRegistry().add(std::make_unique<CameraContext>());
//   if (RTE::RecipeContext* camera = RTE::recipeContextRegistry().get("camera")) ...
//
// Names are compared without regard to case. No lock: contexts are registered and
// removed on one thread while no recipe operation runs.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Recipes/RecipeContext.h>

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace RTE
{

class CORECOMMON_EXPORT RecipeContextRegistry
{
public:
  RecipeContextRegistry();
  RecipeContextRegistry(const RecipeContextRegistry&) = delete;
  RecipeContextRegistry& operator=(const RecipeContextRegistry&) = delete;
  ~RecipeContextRegistry();

  // Takes ownership and appends; returns 0. Throws RTE::Exception for a null context, an
  // invalid name or a name already registered; the context is destroyed then.
  int add(std::unique_ptr<RecipeContext> context);
  bool contains(const QString& name) const;
  // Not owned by the caller; null for an unknown name.
  RecipeContext* get(const QString& name) const;
  // Names in registration order.
  QStringList entries() const;
  // Destroys the context of that name; unknown names are ignored.
  void remove(const QString& name);
  void clear();

  // Registration order.
  const std::vector<std::unique_ptr<RecipeContext>>& contexts() const { return m_contexts; }

  // Not empty, and none of / \ : * ? " < > |.
  static bool isValidContextName(const QString& name);

private:
  std::vector<std::unique_ptr<RecipeContext>>::const_iterator find(const QString& name) const;

  std::vector<std::unique_ptr<RecipeContext>> m_contexts;
};

// The one registry of the process, created on first use.
CORECOMMON_EXPORT RecipeContextRegistry& recipeContextRegistry();

} // namespace RTE
