// The names the pictures give linkage groups: the user's chromosome names, from the table of
// loci that an import writes beside its file, where the markers tell which chromosome a group
// is; else the reports' own group names.
#pragma once

#include <string>
#include <vector>

namespace gaecli {

// `chromosomes[g]` holds the chromosome of each marker of group g ("" when not known). A group
// takes the chromosome most of its known markers come from (the first such in map order on a
// tie), else its `fallback` name. Several groups of one chromosome are told apart by a number
// after a point, in group order: "1A.1", "1A.2".
// `chosen`, when given, receives each group's chromosome ("" for a group named by its fallback).
std::vector<std::string> NameGroups(const std::vector<std::vector<std::string>>& chromosomes,
                                    const std::vector<std::string>& fallback,
                                    std::vector<std::string>* chosen = nullptr);

}  // namespace gaecli
