// Captures what the library writes through Qt's logging while the object lives.
//
//   LogCapture capture("Core.Exception");
//   RTE::Exception("boom").log();
//   EXPECT_EQ(capture.messages().size(), 1);
#pragma once

#include <QLoggingCategory>
#include <QString>
#include <QStringList>

class LogCapture
{
public:
  // Enables every level of the category and records its messages.
  explicit LogCapture(const char* category)
  {
    s_category = category;
    s_messages.clear();
    QLoggingCategory::setFilterRules(QStringLiteral("%1=true").arg(QLatin1String(category)));
    m_previous = qInstallMessageHandler(&LogCapture::handler);
  }
  ~LogCapture()
  {
    qInstallMessageHandler(m_previous);
    QLoggingCategory::setFilterRules(QString());
  }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  const QStringList& messages() const { return s_messages; }

private:
  static void handler(QtMsgType, const QMessageLogContext& context, const QString& message)
  {
    if (context.category && s_category == context.category)
      s_messages.append(message);
  }

  static inline QString s_category;
  static inline QStringList s_messages;
  QtMessageHandler m_previous = nullptr;
};
