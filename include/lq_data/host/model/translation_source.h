// A project as lq::Translate takes it.
#pragma once

#include <utility>

#include "lq_data/export.h"
#include "lq_data/host/model/project.h"
#include "lq_data/translate.h"

namespace lq::host {

// All variable lists, data types and units of a project, of libraries only the variable lists that
// the project has an external of. It must be the current one while it is translated, with the lines
// and columns, temporaries, labels and jumps that the project knows.
class LQ_DATA_API ProjectSource : public TranslationSource {
  public:
    explicit ProjectSource(const Project& project);  // throws std::bad_alloc

    const LQSELECTION* GetGlobals() override { return &globals_.selection; }
    const LQSELECTION* GetTypes() override { return &types_.selection; }
    const LQSELECTION* GetUnits() override { return &units_.selection; }
    SourcePlace GetPlace(ID id) override;
    bool IsTemporary(ID declaration) override;
    void GiveMarks(ID unit, MarkTaker& taker) override;

  private:
    struct OwnObjects {
        explicit OwnObjects(IdList own)
            : ids(std::move(own)), selection(ids.data(), static_cast<int32_t>(ids.size())) {}
        OwnObjects(const OwnObjects&) = delete;

        const IdList ids;
        const IdSelection selection;
    };

    const Project& project_;
    const OwnObjects globals_;
    const OwnObjects types_;
    const OwnObjects units_;
};

}  // namespace lq::host
