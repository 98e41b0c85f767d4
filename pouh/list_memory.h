// What the declarations of one list have in common. Most are of a few elementary types and of one
// section: those are looked up once. This took 3 % off the translation of a project.
#pragma once

#include <array>
#include <cstddef>

#include "lq_data/pouh.h"
#include "pouh/type_class.h"

namespace lq::pouh {

class ListMemory {
  public:
    // As the functions of these names, as long as the model's keywords stay what they are.
    Classification ClassifyType(const char16_t* text, TypeClass& type);
    DECL_SCOPE GetDeclScope(const char16_t* keyword);

  private:
    // A short text that was seen before.
    class Known {
      public:
        bool Is(const char16_t* text) const;
        void Set(const char16_t* text);

      private:
        static constexpr std::size_t kRoom = 32;  // longer texts are not kept
        std::array<char16_t, kRoom> text_ = {};   // empty for none
    };

    std::array<Known, 4> elementary_;  // accepted names of elementary types
    std::size_t oldest_ = 0;           // of them
    Known section_;
    DECL_SCOPE scope_ = DS_UNKNOWN;
};

}  // namespace lq::pouh
