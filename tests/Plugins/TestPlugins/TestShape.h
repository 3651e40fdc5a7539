// A plug-in of the test libraries: it only tells who it is.
#pragma once

#include <Core/Common/Plugins/I_Plugin.h>

#include <string>
#include <utility>

class TestShape : public RTE::I_Plugin
{
public:
  TestShape(std::string domain, std::string name, std::string description) :
      m_domain(std::move(domain)),
      m_name(std::move(name)),
      m_description(std::move(description))
  {
  }

  std::string GetDomain() const override { return m_domain; }
  std::string GetName() const override { return m_name; }
  std::string GetDescription() const override { return m_description; }

private:
  std::string m_domain;
  std::string m_name;
  std::string m_description;
};
