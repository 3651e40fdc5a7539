// A data block larger than a compressor can encode.
//
//   RTE::DataSizeTooLargeForCompression(3, "LZ4", 3000000000ULL).message();
//   // "Compression type 3 (LZ4) can't handle a data block of 3000000000 byte."
#pragma once

#include <Core/Common/Exceptions/Exception.h>

#include <QCoreApplication>

#include <string>

namespace RTE
{

class CORECOMMON_EXPORT DataSizeTooLargeForCompression : public Exception
{
  Q_DECLARE_TR_FUNCTIONS(RTE::DataSizeTooLargeForCompression)

public:
  DataSizeTooLargeForCompression();
  DataSizeTooLargeForCompression(int compressionType, const std::string& compressorName, unsigned long long blockSize);
  ~DataSizeTooLargeForCompression() override;
};

} // namespace RTE
