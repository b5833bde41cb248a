// SPDX-License-Identifier: BSD-3-Clause
// Summarises a column in one pass over its elements, in their own type.
#include "apps/nimbra-host/column_summary.h"

#include "apps/nimbra-host/elements.h"
#include "arrays/nimbra/element_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>

namespace nimbrahost {

namespace {

/// The number in at most `widest` characters, rounded if necessary and possible.
template <class Scalar>
std::string numberWithin(Scalar value, std::size_t widest) {
  std::string exact;
  Nimbra::appendNumber(exact, value);
  const auto real = static_cast<double>(value);
  if (exact.size() <= widest || !std::isfinite(real)) {
    return exact;
  }
  for (int digits = static_cast<int>(widest); digits > 0; --digits) {
    std::array<char, 64> text;
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), real, std::chars_format::general, digits).ptr;
    if (static_cast<std::size_t>(end - text.data()) <= widest) {
      return {text.data(), end};
    }
  }
  return exact;
}

/// Smallest and largest value of a component; not-a-number is ignored.
template <class Scalar>
struct Range {
  std::optional<Scalar> least, greatest;

  template <class T>
  void widen(std::span<const T> elements, std::size_t number) {
    std::size_t i = 0;
    while (!least && i < elements.size()) {
      const Scalar value = component(elements[i++], number);
      if (value == value) { // NOLINT(misc-redundant-expression): false for not-a-number
        least = greatest = value;
      }
    }
    if (!least) {
      return;
    }
    Scalar low = *least;
    Scalar high = *greatest;
    for (; i < elements.size(); ++i) {
      const Scalar value = component(elements[i], number);
      low = value < low ? value : low;
      high = value > high ? value : high;
    }
    least = low;
    greatest = high;
  }
};

/// The elements of the fragments that hold a T, in order, each as one call of `visit`.
template <class T, class Visitor>
void forEachPiece(const Nimbra::Field& field, Visitor&& visit) {
  for (const Nimbra::Field::Fragment& fragment : field.fragments()) {
    const Nimbra::MemBase::Pointer array = fragment.array();
    const auto chunk = array ? array->chunkBase() : nullptr;
    if (chunk) {
      visitElements(*chunk, array->elementCount(), [&visit]<class Found>(std::span<const Found> elements) {
        if constexpr (std::is_same_v<Found, T>) {
          visit(elements);
        }
      });
    }
  }
}

template <class T>
struct Ends {
  std::uint64_t count = 0;
  const T* first = nullptr;
  const T* last = nullptr;
};

template <class T>
Ends<T> findEnds(const Nimbra::Field& field) {
  Ends<T> ends;
  forEachPiece<T>(field, [&ends](std::span<const T> elements) {
    if (elements.empty()) {
      return;
    }
    ends.first = ends.first == nullptr ? &elements.front() : ends.first;
    ends.last = &elements.back();
    ends.count += elements.size();
  });
  return ends;
}

template <class T>
ComponentSummary summariseComponent(const Nimbra::Field& field, const Ends<T>& ends, std::size_t number,
                                    std::size_t widest) {
  if (ends.count == 0) {
    return {};
  }
  if constexpr (std::is_same_v<T, std::string>) {
    return {*ends.first, *ends.last, "", ""};
  } else {
    using Scalar = std::remove_cvref_t<decltype(component(*ends.first, number))>;
    Range<Scalar> range;
    forEachPiece<T>(field, [&](std::span<const T> elements) { range.widen(elements, number); });
    const auto text = [widest](Scalar value) { return numberWithin(value, widest); };
    return {text(component(*ends.first, number)), text(component(*ends.last, number)),
            range.least ? text(*range.least) : "nan", range.greatest ? text(*range.greatest) : "nan"};
  }
}

template <class T>
ColumnSummary summariseAs(const Nimbra::Field& field, std::size_t widest) {
  ColumnSummary summary;
  summary.typeName = elementTypeName<T>();
  const Ends<T> ends = findEnds<T>(field);
  summary.elementCount = ends.count;
  for (std::size_t number = 0; number < componentsOf<T>(); ++number) {
    summary.components.push_back(summariseComponent<T>(field, ends, number, widest));
  }
  return summary;
}

} // namespace

ColumnSummary summarise(const Nimbra::Field& field, std::size_t widestNumber) {
  ColumnSummary summary;
  for (const Nimbra::Field::Fragment& fragment : field.fragments()) {
    const Nimbra::MemBase::Pointer array = fragment.array();
    const auto chunk = array ? array->chunkBase() : nullptr;
    if (!chunk) {
      continue;
    }
    // The elements of an unknown type cannot be read; its name is shown.
    summary.typeName = elementTypeNameOf(*chunk);
    visitElements(*chunk, 0,
                  [&]<class T>(std::span<const T>) { summary = summariseAs<T>(field, widestNumber); });
    break;
  }
  return summary;
}

} // namespace nimbrahost
