#include <Core/Common/Parameter/StructuralDiffs.h>

#include <Core/Common/Parameter/C_Tree.h>

namespace RTE::Parameter
{

StructuralDiffs::StructuralDiffs(const C_Tree& from, C_Tree& to) :
    m_source(&from),
    m_targetOnly(to.GetRootCategory()->missingNodesIn(from.GetRootCategory())),
    m_target(&to),
    m_sourceOnly(from.GetRootCategory()->missingNodesIn(to.GetRootCategory()))
{
}

bool StructuralDiffs::empty() const
{
  return m_targetOnly.isEmpty() && m_sourceOnly.isEmpty();
}

} // namespace RTE::Parameter
