// Parameter nodes as an indented text tree, one node per line: name, kind, value,
// range and access mode. Shared by `rte params` and the demo.
#pragma once

#include <Core/Common/Parameter/C_Node.h>

#include <QTextStream>

#include <list>
#include <memory>

namespace rte
{

void printParameters(QTextStream& out, const std::list<std::shared_ptr<RTE::Parameter::C_Node>>& nodes, int depth = 0);

} // namespace rte
