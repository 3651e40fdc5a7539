#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Exceptions/ThreadExceptionReport.h>
#include <Core/Common/OperatingSystem/Thread.h>
#include <Core/Common/OperatingSystem/ThreadHandle.h>

#include <gtest/gtest.h>

#include <pthread.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace
{

struct RecordingHandler : RTE::I_ThreadExceptionHandler
{
  void HandleException(std::exception_ptr exception, const QString& text) override
  {
    texts.push_back(text);
    last = exception;
  }
  std::vector<QString> texts;
  std::exception_ptr last;
};

class WorkThread : public RTE::Thread
{
public:
  WorkThread(std::shared_ptr<RTE::I_ThreadExceptionHandler> handler, std::function<void()> work,
             const QString& name = QString()) :
      Thread(std::move(handler), name),
      m_work(std::move(work))
  {
  }
  ~WorkThread() override { Join(); }

protected:
  void Run() override { m_work(); }

private:
  std::function<void()> m_work;
};

} // namespace

TEST(Thread, EveryExceptionOfTheWorkGoesToTheHandler)
{
  auto handler = std::make_shared<RecordingHandler>();
  const std::vector<std::function<void()>> works = {
      [] { RTE::Raise(RTE::InvalidRequest(QStringLiteral("device busy"))); },
      [] { throw std::runtime_error("disk full"); },
      [] { throw 7; },
      [] {},
  };
  for (const auto& work : works)
  {
    WorkThread thread(handler, work);
    EXPECT_FALSE(thread.IsStarted());
    thread.Create();
    EXPECT_TRUE(thread.IsStarted());
    thread.Join();
    EXPECT_FALSE(thread.IsStarted());
  }
  ASSERT_EQ(handler->texts.size(), 3u);
  EXPECT_EQ(handler->texts[0], QStringLiteral("device busy"));
  EXPECT_EQ(handler->texts[1], QStringLiteral("disk full"));
  EXPECT_EQ(handler->texts[2], QStringLiteral("Unknown exception"));
  EXPECT_THROW(std::rethrow_exception(handler->last), int);
}

TEST(Thread, DefaultHandlerRecordsTheTextForCrashReports)
{
  RTE::ThreadExceptionReport::Clean();
  RTE::ThreadHandle::ThreadId id = 0;
  std::string name;
  {
    WorkThread thread(
        RTE::CreateDefaultThreadExeptionHandler(),
        [&]
        {
          id = RTE::ThreadHandle::GetThreadId();
          char buffer[16] = {};
          pthread_getname_np(pthread_self(), buffer, sizeof buffer);
          name = buffer;
          throw std::logic_error("sampler stopped");
        },
        QStringLiteral("Sampler"));
    thread.Create();
  }
  EXPECT_EQ(name, "Sampler");
  EXPECT_EQ(RTE::ThreadExceptionReport::Dump(),
            QStringLiteral("Main thread: \nThread id=%1: sampler stopped\n").arg(id));
  RTE::ThreadExceptionReport::Clean();
}

TEST(Thread, MisuseIsRefused)
{
  EXPECT_THROW(WorkThread(nullptr, [] {}), RTE::InvalidArgumentError);

  auto handler = std::make_shared<RecordingHandler>();
  std::error_code selfJoin;
  WorkThread* self = nullptr;
  WorkThread thread(handler,
                    [&]
                    {
                      try
                      {
                        self->Join();
                      }
                      catch (const std::system_error& e)
                      {
                        selfJoin = e.code();
                      }
                    });
  self = &thread;
  thread.Create();
  EXPECT_THROW(thread.Create(), RTE::InvalidRequest);
  thread.Join();
  EXPECT_EQ(selfJoin, std::errc::resource_deadlock_would_occur);
  EXPECT_TRUE(handler->texts.empty());
}
