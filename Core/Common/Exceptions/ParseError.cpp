#include <Core/Common/Exceptions/ParseError.h>

namespace RTE
{

ParseError::ParseError() : Exception(QString()) {}

ParseError::ParseError(const QString& text, int line, int column) :
    Exception(tr("%1 in line %2, column %3").arg(text, QString::number(line), QString::number(column))),
    m_text(text),
    m_line(line),
    m_column(column)
{
}

ParseError::~ParseError() = default;

} // namespace RTE
