// One module's share of a recipe: it writes its part of the set-up into a folder, checks
// and prepares loading it, loads it and summarises it. The host derives one class per
// module and registers an instance with RTE::recipeContextRegistry():
//
//   class CameraContext : public RTE::RecipeContext
//   {
//     QString name() const override { return QStringLiteral("Camera"); } // subfolder name
//     QStringList save(const QString& folder, const QString&, int) override
//     { ...write folder + "/camera.xml"...; return {}; }
//     ...
//   };
//   RTE::recipeContextRegistry().add(std::make_unique<CameraContext>());
//
// Every folder handed in is "<recipe folder>/<context subfolder>"; for save it exists.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>
#include <QStringList>

namespace RTE
{

class CORECOMMON_EXPORT RecipeContext
{
public:
  // Combined results are the maximum; Error stops the phase.
  enum class CheckResult
  {
    Ok = 0,
    Warning = 1,
    Error = 2
  };

  RecipeContext() = default;
  RecipeContext(const RecipeContext&) = default;
  RecipeContext& operator=(const RecipeContext&) = default;
  virtual ~RecipeContext();

  // Registry key and subfolder name; must pass RecipeContextRegistry::isValidContextName.
  virtual QString name() const = 0;
  // For progress texts and error messages.
  virtual QString displayName() const = 0;
  // Activation runs higher keys first.
  virtual int activationOrder() const = 0;
  virtual QString summary(const QString& folder) const = 0;

  // Activation phases; contextFlag belongs to the contexts, the store passes it through.
  virtual CheckResult checkActivateOk(const QString& folder, int contextFlag, QStringList& messages) = 0;
  virtual QStringList prepareActivate(const QString& folder, int contextFlag) = 0;
  virtual QStringList activate(const QString& folder, int contextFlag) = 0;

  // Save phases; the selection is the caller's (empty text and -1 when it gave none).
  virtual CheckResult checkSaveOk(const QString& selectionText, int selectionIndex, QStringList& messages) = 0;
  virtual QStringList prepareSave(const QString& selectionText, int selectionIndex) = 0;
  virtual QStringList save(const QString& folder, const QString& selectionText, int selectionIndex) = 0;
};

} // namespace RTE
