// File functions against the system tools on the same trees, in one run:
//   DirSize of 100,000 files in 1,000 folders        vs  du -sb
//   progress CopyFolder of 2,000 files (200 MB)      vs  cp -r
//   CopyFileInPieces of one 1 GB file               vs  cp
// The trees are built once below $FS_BENCH_DIR (default /tmp) and removed at the end.
// The page cache is warm for both sides: run each pair in the same invocation. Times
// are wall-clock, since the references run in child processes.
#include <Core/Common/OperatingSystem/ActivityControl.h>
#include <Core/Common/OperatingSystem/ActivityFeedback.h>
#include <Core/Common/OperatingSystem/FileSystem.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <unistd.h>

namespace
{

namespace FS = RTE::FileSystem;

QString BaseFolder()
{
  const QString base = qEnvironmentVariable("FS_BENCH_DIR");
  return base.isEmpty() ? QDir::tempPath() : base;
}

// Each tree is built on first use, so a filtered run builds only what it measures.
struct Trees
{
  QTemporaryDir dir{BaseFolder() + QStringLiteral("/FileSystemBench-XXXXXX")};

  const QString& many() // 1,000 folders of 100 small files
  {
    static const QString path = [this]
    {
      const QString root = dir.path() + QStringLiteral("/many");
      const QByteArray small(100, 's');
      for (int f = 0; f < 1000; ++f)
      {
        const QString folder = root + QStringLiteral("/f%1").arg(f);
        QDir().mkpath(folder);
        for (int i = 0; i < 100; ++i)
          Write(folder + QStringLiteral("/%1.dat").arg(i), small, 1);
      }
      ::sync(); // write-back of the fresh tree must not land in the first timed copy
      return root;
    }();
    return path;
  }

  const QString& medium() // 2,000 files of 100 kB in 20 folders
  {
    static const QString path = [this]
    {
      const QString root = dir.path() + QStringLiteral("/medium");
      const QByteArray hundredK(100 * 1024, 'm');
      for (int i = 0; i < 2000; ++i)
      {
        const QString folder = root + QStringLiteral("/d%1").arg(i / 100);
        QDir().mkpath(folder);
        Write(folder + QStringLiteral("/%1.raw").arg(i), hundredK, 1);
      }
      ::sync(); // write-back of the fresh tree must not land in the first timed copy
      return root;
    }();
    return path;
  }

  const QString& bigFile() // 1 GB
  {
    static const QString path = [this]
    {
      const QString file = dir.path() + QStringLiteral("/big.bin");
      Write(file, QByteArray(1 << 20, 'b'), 1024);
      ::sync();
      return file;
    }();
    return path;
  }

  static void Write(const QString& path, const QByteArray& block, int times)
  {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
      std::abort();
    for (int i = 0; i < times; ++i)
      file.write(block);
  }
};

Trees& trees()
{
  static Trees t;
  return t;
}

int Shell(const QString& command)
{
  return std::system(command.toLocal8Bit().constData());
}

QString Quoted(const QString& path)
{
  return QLatin1Char('\'') + path + QLatin1Char('\'');
}

void DirSize_Library(benchmark::State& state)
{
  const QString root = trees().many();
  RTE::ActivityControl control;
  for (auto _ : state)
    benchmark::DoNotOptimize(FS::DirSize(root, control));
}

void DirSize_DuSb(benchmark::State& state)
{
  const QString command = QStringLiteral("du -sb %1 > /dev/null").arg(Quoted(trees().many()));
  for (auto _ : state)
    benchmark::DoNotOptimize(Shell(command));
}

void CopyFolder_Library(benchmark::State& state)
{
  const QString target = trees().dir.path() + QStringLiteral("/medium-copy");
  RTE::ActivityControl control;
  RTE::ActivityFeedback feedback;
  for (auto _ : state)
  {
    FS::CopyFolder(trees().medium(), target, control, feedback);
    state.PauseTiming();
    QDir(target).removeRecursively();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * 2000LL * 100 * 1024);
}

void CopyFolder_CpR(benchmark::State& state)
{
  const QString target = trees().dir.path() + QStringLiteral("/medium-copy");
  const QString command = QStringLiteral("cp -r %1 %2").arg(Quoted(trees().medium()), Quoted(target));
  for (auto _ : state)
  {
    Shell(command);
    state.PauseTiming();
    QDir(target).removeRecursively();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * 2000LL * 100 * 1024);
}

void CopyFileInPieces_Library(benchmark::State& state)
{
  const QString target = trees().dir.path() + QStringLiteral("/big.copy");
  std::uint64_t pieces = 0;
  for (auto _ : state)
  {
    FS::CopyFileInPieces(
        trees().bigFile(), target, [&](std::uint64_t, std::uint64_t) { ++pieces; }, [] { return false; }, true);
    state.PauseTiming();
    QFile::remove(target);
    state.ResumeTiming();
  }
  benchmark::DoNotOptimize(pieces);
  state.SetBytesProcessed(state.iterations() * (1LL << 30));
}

void CopyFile_Cp(benchmark::State& state)
{
  const QString target = trees().dir.path() + QStringLiteral("/big.copy");
  const QString command = QStringLiteral("cp %1 %2").arg(Quoted(trees().bigFile()), Quoted(target));
  for (auto _ : state)
  {
    Shell(command);
    state.PauseTiming();
    QFile::remove(target);
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * (1LL << 30));
}

} // namespace

BENCHMARK(DirSize_Library)->Unit(benchmark::kMillisecond)->MinTime(1.0)->UseRealTime();
BENCHMARK(DirSize_DuSb)->Unit(benchmark::kMillisecond)->MinTime(1.0)->UseRealTime();
BENCHMARK(CopyFolder_Library)->Unit(benchmark::kMillisecond)->MinTime(1.0)->UseRealTime();
BENCHMARK(CopyFolder_CpR)->Unit(benchmark::kMillisecond)->MinTime(1.0)->UseRealTime();
BENCHMARK(CopyFileInPieces_Library)->Unit(benchmark::kMillisecond)->MinTime(1.0)->UseRealTime();
BENCHMARK(CopyFile_Cp)->Unit(benchmark::kMillisecond)->MinTime(1.0)->UseRealTime();
