#include <Core/Common/Compression/I_Compression.h>

#include <QCoreApplication>

namespace RTE
{

I_Compression::~I_Compression() = default;

std::string I_Compression::GetDomain() const
{
  return "Tarvell.Compression";
}

QString I_Compression::CommonErrorText(uint32_t code)
{
  const char* text = nullptr;
  switch (code)
  {
  case ErrorNoDestination:
    text = QT_TRANSLATE_NOOP("RTE::I_Compression", "No destination memory defined.");
    break;
  case ErrorDestinationTooSmall:
    text = QT_TRANSLATE_NOOP("RTE::I_Compression", "Destination memory too small.");
    break;
  case ErrorSourceTooShort:
    text = QT_TRANSLATE_NOOP("RTE::I_Compression", "Source data ends before the end of the block.");
    break;
  case ErrorCorruptData:
    text = QT_TRANSLATE_NOOP("RTE::I_Compression", "Compressed data corrupt.");
    break;
  case ErrorSourceTooLarge:
    text = QT_TRANSLATE_NOOP("RTE::I_Compression", "Source too large for this compression.");
    break;
  case ErrorInvalidParameter:
    text = QT_TRANSLATE_NOOP("RTE::I_Compression", "Invalid compression parameter.");
    break;
  case ErrorNoSource:
    text = QT_TRANSLATE_NOOP("RTE::I_Compression", "No source memory defined.");
    break;
  case ErrorOddSourceSize:
    text = QT_TRANSLATE_NOOP("RTE::I_Compression", "Source size is not a whole number of words.");
    break;
  default:
    return QString();
  }
  return QCoreApplication::translate("RTE::I_Compression", text);
}

QString I_Compression::NoErrorText()
{
  return QCoreApplication::translate("RTE::I_Compression", "No error");
}

} // namespace RTE
