// The lines of a table, one after the other: position and record.
//
//   auto globals = lq::Lines<CgTab::TAB_GLB>(tables);
//   for (const auto& [pos, line] : globals) ...
//   if (!globals.IsWhole()) ...  // the table ends in what is no line: a damaged image
//
// Each step reads the line behind the one before, as CgTab::Read does, wherever the table stands
// meanwhile; the loop's body may read and search the set, and append lines, which are then walked,
// too. Texts behind pointers of a record are the set's, valid until its next read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <tuple>

#include "lq_data/cgtab.h"

namespace lq {

namespace detail {

// In the order of TAB_ID.
using LineRecords =
    std::tuple<CgTab::DBG_INFO, CgTab::POU_LINE, CgTab::CMP_LINE, CgTab::GLB_LINE, CgTab::ADR_LINE,
               CgTab::CstLine, CgTab::LBL_LINE, CgTab::TMP_LINE, CgTab::DMM_LINE>;
static_assert(std::tuple_size_v<LineRecords> == CgTab::kUserTables);

}  // namespace detail

// A line's record type.
template <CgTab::TAB_ID kId>
using LineRecord = std::tuple_element_t<kId, detail::LineRecords>;

// The lines of one of tables 0 to 8 that begin at or behind `start` and before `end`, which are
// positions of lines: all, or the section of a unit (CgTab::POS_DSC). It is walked once.
template <CgTab::TAB_ID kId>
class Lines {
  public:
    struct Line {
        int32_t pos;
        LineRecord<kId> line;
    };

    class Iterator {
      public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Line;
        using difference_type = std::ptrdiff_t;
        using pointer = const Line*;
        using reference = const Line&;

        Iterator() = default;
        explicit Iterator(Lines* lines) : lines_(lines) {}
        reference operator*() const { return lines_->current_; }
        pointer operator->() const { return &lines_->current_; }
        Iterator& operator++() {
            lines_ = lines_->Step() ? lines_ : nullptr;
            return *this;
        }
        void operator++(int) { ++*this; }
        bool operator==(const Iterator& other) const { return lines_ == other.lines_; }

      private:
        Lines* lines_ = nullptr;
    };

    explicit Lines(CgTab& tables) : tables_(tables) {}
    Lines(CgTab& tables, const CgTab::POS_DSC& section)
        : tables_(tables), next_(section.start), end_(section.end) {}
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;

    Iterator begin() { return Iterator(Step() ? this : nullptr); }
    Iterator end() { return {}; }

    // Whether the walk has come, or can still come, to the end of the lines: false once something
    // that is no line lies there, or memory was short.
    bool IsWhole() const { return isWhole_; }

  private:
    bool Step() {
        if (!isWhole_ || next_ >= end_ || !tables_.SetPos(kId, next_) || tables_.End(kId)) {
            return false;
        }
        current_.pos = next_;
        isWhole_ = tables_.Read(next_, current_.line, 0, nullptr) != 0;
        return isWhole_;
    }

    CgTab& tables_;
    int32_t next_ = 0;
    int32_t end_ = INT32_MAX;
    bool isWhole_ = true;
    Line current_ = {};
};

}  // namespace lq
