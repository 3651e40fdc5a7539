#include <Core/Common/Exceptions/DataSizeTooLargeForCompression.h>

namespace RTE
{

DataSizeTooLargeForCompression::DataSizeTooLargeForCompression() : Exception(QString()) {}

DataSizeTooLargeForCompression::DataSizeTooLargeForCompression(int compressionType, const std::string& compressorName,
                                                               unsigned long long blockSize) :
    Exception(
        tr("Compression type %1 (%2) can't handle a data block of %3 byte.")
            .arg(QString::number(compressionType), QString::fromStdString(compressorName), QString::number(blockSize)))
{
}

DataSizeTooLargeForCompression::~DataSizeTooLargeForCompression() = default;

} // namespace RTE
