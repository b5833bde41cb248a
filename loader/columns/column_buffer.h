// SPDX-License-Identifier: BSD-3-Clause
// The column buffer: the database client writes a block into it, and it hands the block over to a field.
// Both imports derive their buffers from it. docs/architecture.md describes the life of one block.
#pragma once

#include <rdb2nimbra/rdb2nimbra.h>

#include "arrays/nimbra/element_records.h"
#include "arrays/nimbra/mem_array.h"
#include "loader/columns/named_field.h"
#include "loader/columns/unused_pages.h"
#include "model/nimbra/grid.h"
#include "model/torvel/objects/cache.h"
#include "model/torvel/references/chunk.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace Riegl {

/// Buffer of one column for one block: owns a chunk whose elements the client fills in place, and refers to
/// the field that receives the chunk. Reference-counted; serves one block and is never reused.
///
/// T is one of the eleven element types. A new buffer holds `capacity` elements: zeros for the scalar types;
/// points, vectors and colours are not initialised.
///
/// \errors  std::bad_alloc; std::length_error "cannot create std::vector larger than max_size()"
/// \threads the thread of the load
template <class T>
class Z4Data : public Torvel::ReferenceBase<Z4Data<T>> {
 public:
  /// Makes the buffer and, unless it exists, the field, so that fields are created in the order of the
  /// columns.
  ///
  /// \param fieldName  name of the field
  /// \param grid       receives the field; must outlive the buffer
  /// \param inChart    true: the grid's default place; false: "ScannerCoordinateSystem", which must exist
  /// \param elements   number of elements of the buffer
  Z4Data(const std::string& fieldName, Nimbra::Grid& grid, bool inChart, unsigned int elements)
      : Torvel::ReferenceBase<Z4Data<T>>(this), serial(nextSerial.fetch_add(1, std::memory_order_relaxed)),
        name(fieldName), toChart(inChart), capacity(elements), chunk(new Torvel::Chunk<T>(elements)),
        values(&chunk->values()), descriptor(Nimbra::elementRecord<T>()), field(findField(grid)) {}
  ~Z4Data() override = default;

  /// The first element of the buffer, for the client to write to. Valid until the block is published.
  T* firstElement() const { return values->data(); }

  /// All values of the block, to be changed in place.
  std::vector<T>& blockValues() const { return *values; }

  /// The field that receives the block.
  const Nimbra::Field::Pointer& receivingField() const { return field; }

  /// Sets an attribute of the field, as a chunk of one element, and gives the field a new age.
  /// \errors  std::bad_alloc
  void setAttribute(const std::string& attribute, const double& value) { setValue(attribute, value); }
  void setAttribute(const std::string& attribute, const float& value) { setValue(attribute, value); }
  void setAttribute(const std::string& attribute, const std::string& value) { setValue(attribute, value); }

 protected:
  /// Hands the block over to the field without a copy: cuts the chunk, calls the callback, gives the array to
  /// the field, and sets the attribute "LeapSecondsAdded?" of "GPSTime". A buffer without elements does
  /// nothing.
  ///
  /// \param fragment  identity of the block, shared by all columns
  /// \param count     records of the block
  /// \param isUTC     the time system of the database
  /// \param callback  may be empty; may change the values in place
  /// \errors  std::bad_alloc, and the exceptions of the callback and the data model; the field then has no
  ///          part of the block, or the block without the attribute
  void publishBlock(const Torvel::StrongPtr<Nimbra::FragmentID, Nimbra::FragmentID>& fragment,
                    unsigned int count, const bool& isUTC, const ChunkCallback& callback) {
    if (values->empty()) {
      return;
    }
    values->resize(count);
    releaseUnusedPagesOf(*chunk);
    if (callback) {
      callback(Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>(chunk), name, isUTC);
    }
    const Torvel::StrongPtr<Torvel::Cache, Torvel::CacheBase>& cache = Torvel::Cache::MemCache();
    const Nimbra::MultiIndex<1> extent{values->size()};
    const Nimbra::MemBase::Pointer array(new Nimbra::MemArray<1, T>(chunk, extent, nullptr));
    field->setPersistentData(array, fragment, cache, "");
    if (name == "GPSTime") {
      setValue<unsigned char>("LeapSecondsAdded?", isUTC ? 0 : 1);
    }
  }

 private:
  Nimbra::Field::Pointer findField(Nimbra::Grid& grid) const {
    if (toChart) {
      return grid[name];
    }
    const auto representation = grid.getCartesianRepresentation("ScannerCoordinateSystem");
    return makeNamedField(*representation, name);
  }

  template <class Value>
  void setValue(const std::string& attribute, const Value& value) {
    const Torvel::StrongPtr<Torvel::Chunk<Value>, Torvel::ChunkBase> single(new Torvel::Chunk<Value>(1));
    single->values().front() = value;
    field->attributes().setAttribute(attribute, single);
    field->touch();
  }

  inline static std::atomic<std::uint64_t> nextSerial{0};

  const std::uint64_t serial; ///< running number of the buffers of this element type; for debuggers
  const std::string name;
  const bool toChart;
  const std::uint32_t capacity;
  const Torvel::StrongPtr<Torvel::Chunk<T>, Torvel::ChunkBase> chunk;
  std::vector<T>* const values;             ///< the vector inside the chunk
  const Nimbra::NimbraTypeIndex descriptor; ///< describes an element
  const Nimbra::Field::Pointer field;
};

} // namespace Riegl
