// Sole ownership of an object with a virtual destructor, for the length of a scope.
#pragma once

namespace lq::pouh {

template <typename T>
class Owned {
  public:
    explicit Owned(T* object) : object_(object) {}
    ~Owned() { delete object_; }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;

    explicit operator bool() const { return object_ != nullptr; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }

  private:
    T* object_;
};

}  // namespace lq::pouh
