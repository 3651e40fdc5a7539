// "IMX": a delta coder of 16-bit words laid out in rows. Each word becomes a one-byte
// delta to the word before, a nibble of a block of small deltas or a literal word; the
// running value starts at 0 and continues from row to row. DESIGN.md describes the
// tokens and the parallel encoder.
//
//   codec.SetParameters({{"Columns", 2048}, {"Rows", 2048}, {"ParallelAuto", true}});
//
// Parameters: "Columns" (words per row; 0 compresses the whole source as one row),
// "Rows" (0 compresses as many rows as the source holds, decompresses one row),
// "Parallel" (use the row-parallel encoder), "ParallelAuto" (true: parallel from 64 rows
// on; below that "Parallel" decides), "Size" (read back: the bytes of the last stream,
// written by Compress or consumed by Decompress; setting it has no effect).
#pragma once

#include <Core/Common/Compression/I_Compression.h>

namespace RTE
{

class CORECOMMON_EXPORT C_IMX : public I_Compression
{
public:
  static constexpr uint32_t ErrorColumnsMissing = 2;
  static constexpr uint32_t ErrorColumnsOrRowsMissing = 3;
  // Rows from which ParallelAuto picks the parallel encoder.
  static constexpr unsigned long long ParallelAutoRows = 64;

  std::string GetName() const override;
  std::string GetDescription() const override;
  // (3 * n) / 2.
  unsigned long long GetMaxCompressedSize(unsigned long long sourceSize) override;
  void SetParameters(const QVariantMap& parameters) override;
  QVariantMap GetParameters() const override;
  uint32_t Compress(const void* source, unsigned long long sourceSize, void* destination,
                    unsigned long long& destinationSize) override;
  // Writes Rows (one when 0) rows of Columns words; error 2 without Columns.
  uint32_t Decompress(const void* source, unsigned long long sourceSize, void* destination,
                      unsigned long long& destinationSize) override;
  QString GetErrorText(uint32_t code) const override;

private:
  unsigned long long m_columns = 0;
  unsigned long long m_rows = 0;
  bool m_parallel = false;
  bool m_parallelAuto = false;
  unsigned long long m_size = 0;
};

} // namespace RTE
