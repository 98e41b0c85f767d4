#include "lq_data/host/mdi/pou_ref.h"

namespace lq::host {

void NamedPouRef::GetName(CLQString* name) const {
    *name = name_;
}

}  // namespace lq::host
