// Parts-per notation; base parts per million.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT PartsPerUnit : public Units
{
public:
  // "Parts-per"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString PartsPerMillion;
  static const QString PartsPerBillion;
  static const QString PartsPerTrillion;
  static const QString PartsPerQuadrillion;

  PartsPerUnit();
  PartsPerUnit(const PartsPerUnit&);
  PartsPerUnit& operator=(const PartsPerUnit&);
  ~PartsPerUnit() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
