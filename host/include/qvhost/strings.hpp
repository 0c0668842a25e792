// Host string arrays: elements are shared, atomically reference-counted UTF-16 texts,
// or missing (no text at all, distinct from an empty text).
#pragma once

#include <atomic>
#include <cstddef>
#include <string>

#include "qvhost/array.hpp"

class qvSharedText {
 public:
  explicit qvSharedText(std::u16string text) : text_(std::move(text)) {}
  const std::u16string& text() const noexcept { return text_; }
  void addRef() noexcept { refs_.fetch_add(1, std::memory_order_relaxed); }
  // Frees the text when the last reference goes.
  void release() noexcept;
  int useCount() const noexcept { return refs_.load(std::memory_order_acquire); }

 private:
  ~qvSharedText() = default;
  std::atomic<int> refs_{1};
  std::u16string text_;
};

// What getString hands out: the element count and the element table; a null entry is a
// missing element.
struct StringArrayView {
  std::size_t count = 0;
  qvSharedText* const* elements = nullptr;

  bool isMissing(std::size_t i) const noexcept { return elements[i] == nullptr; }
  const std::u16string& at(std::size_t i) const noexcept { return elements[i]->text(); }
};

// 1-by-1 string array holding text.
qvArrayPtr createStringArray(const std::u16string& text);
// String array of the given dimensions, every element an empty text.
qvArrayPtr createStringArray(std::size_t ndims, const std::uint64_t* dims);
// m-by-n string array, every element an empty text.
qvArrayPtr createStringArray(std::uint64_t m, std::uint64_t n);

bool isString(const qvArray* a) noexcept;
// Throws std::invalid_argument when a is not a string array.
StringArrayView getString(const qvArray* a);

// Replaces element i with a new text (reference count 1), releasing the old one.
void setStringElement(qvArray* a, std::size_t i, std::u16string text);
// Makes element i missing, releasing its text.
void setStringMissing(qvArray* a, std::size_t i);
// Makes element i share the text of element j of another (or the same) string array.
void shareStringElement(qvArray* a, std::size_t i, const qvArray* from, std::size_t j);
