#include <utility>

#include "bench/rivals/rivals.h"

namespace lq::bench {

struct Cursor::Block {
    static constexpr int kNodes = 20;

    Block* next;
    int used;
    Node nodes[kNodes];
};

Cursor::Cursor() : head_(new Node{nullptr, nullptr, 0}), current_(head_) {
    head_->next = head_->prev = head_;
}

Cursor::~Cursor() {
    while (blocks_) {
        delete std::exchange(blocks_, blocks_->next);
    }
    delete head_;
}

void Cursor::Append(uint32_t value) {
    if (!blocks_ || blocks_->used == Block::kNodes) {
        blocks_ = new Block{blocks_, 0, {}};
    }
    Node* const node = &blocks_->nodes[blocks_->used++];
    *node = {head_, head_->prev, value};
    head_->prev = head_->prev->next = node;
}

void Cursor::Rewind() {
    current_ = head_;
    index_ = 0;
}

uint32_t Cursor::Step(uint32_t* out) {
    Node* const next = current_->next;
    if (next == head_) {
        return 0;
    }
    current_ = next;
    *out = next->value;
    return ++index_;
}

uint32_t Cursor::StepToSlot(void*& slot) {
    Node* const next = current_->next;
    if (next == head_) {
        slot = nullptr;
        return 0;
    }
    current_ = next;
    slot = &next->value;
    return ++index_;
}

}  // namespace lq::bench
