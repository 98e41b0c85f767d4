// The addresses that configurations give variables of instances.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lq_data/host/model/project.h"

namespace lq::host::symbols {

// The POU, configuration or resource that a variable stands in.
ID HolderOf(const Project& project, const Declaration& declaration);

class ConfiguredAddresses {
  public:
    explicit ConfiguredAddresses(const Project& project) : project_(project) {}

    // Takes what all VAR_CONFIG say; before, none has said anything.
    void Read();

    // An address as "%I*" makes way for what VAR_CONFIG gives the variable of that name,
    // "mid.one.hw", in the holder: a program of several instances must have been given the same in
    // each. Any other stays.
    std::u16string_view InPlaceOf(std::u16string_view address, ID holder,
                                  std::u16string_view name) const;

  private:
    void Enter(const Declaration& given);
    void EnterPath(const std::u16string& path, std::u16string_view address);
    void ReadBeginnings();
    void ReadPrograms(const IdList& instances, const std::u16string& path);

    const Project& project_;
    // By paths in capitals from the configuration; empty where two are given.
    std::unordered_map<std::u16string, std::u16string_view> addresses_;
    // What stands in front of the names of a holder's variables, once for each instance.
    std::unordered_map<uint32_t, std::vector<std::u16string>> beginnings_;
};

}  // namespace lq::host::symbols
