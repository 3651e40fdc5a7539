#include "FileSystemTool.h"

#include "Command.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <exception>
#include <thread>

namespace rte
{

namespace
{

std::atomic<bool> g_interrupted{false};

extern "C" void onInterrupt(int)
{
  g_interrupted = true;
}

} // namespace

bool runCancellable(RTE::ActivityControl& control, const std::function<void()>& work)
{
  g_interrupted = false;
  // The handler only sets a flag; the cancel itself (which emits a signal) happens here.
  auto* previous = std::signal(SIGINT, &onInterrupt);
  std::atomic<bool> done{false};
  std::exception_ptr failure;
  std::thread worker(
      [&]
      {
        try
        {
          work();
        }
        catch (...)
        {
          failure = std::current_exception();
        }
        done = true;
      });
  bool cancelled = false;
  while (!done)
  {
    if (g_interrupted && !cancelled)
    {
      control.cancel();
      cancelled = true;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  worker.join();
  std::signal(SIGINT, previous);
  if (failure)
    std::rethrow_exception(failure);
  return cancelled;
}

void showProgress(double percent, const QString& text)
{
  constexpr int Width = 30;
  const int filled = static_cast<int>(percent / 100.0 * Width);
  QString line = QStringLiteral("\r[%1%2] %3% %4")
                     .arg(QString(filled, QLatin1Char('#')), QString(Width - filled, QLatin1Char('-')))
                     .arg(static_cast<int>(percent), 3)
                     .arg(text.left(60));
  err() << line.leftJustified(Width + 70) << Qt::flush;
}

} // namespace rte
