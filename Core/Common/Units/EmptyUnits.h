// The placeholder set of a value shown without unit: "None", labelled "Off".
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT EmptyUnits : public Units
{
public:
  // "EmptyUnits"
  static const QString TypeIdentifier;

  EmptyUnits();
  EmptyUnits(const EmptyUnits&);
  EmptyUnits& operator=(const EmptyUnits&);
  ~EmptyUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
