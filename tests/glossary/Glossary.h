// The names that docs/glossary.md tells, and those of the controls that a header declares.
#pragma once

#include <map>
#include <set>
#include <string>

namespace zemo::test {

using Names = std::set<std::string>;

// By section: the names of its lines "| `NAME` | what it is |". "`NAME01` to `NAME07`" is seven of
// them. A name that stands twice in a section, and one without a text, is told in `faults`.
std::map<std::string, Names> ReadGlossary(const std::string& text, Names& faults);

// The members of a struct in a header that are controls of a screen: they begin with a capital.
// What a member says of its control (its caption, whether it is enabled) counts as the control.
Names ControlsIn(const std::string& header, const std::string& structName);

}  // namespace zemo::test
