// A bare Qt object for older code that needs something to hang signal connections on.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QObject>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT LegacySignalBridge : public QObject
{
  Q_OBJECT

public:
  LegacySignalBridge();
  ~LegacySignalBridge() override;
};

} // namespace RTE::Parameter
