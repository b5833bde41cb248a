// SPDX-License-Identifier: BSD-3-Clause
// Makes, binds and publishes the column buffers of a point-cloud load, row by row.
#include "loader/pointcloud/rdbx_columns.h"

#include "loader/columns/block_size.h"
#include "loader/pointcloud/waveform_attributes.h"

#include <type_traits>

namespace Riegl {

namespace {

/// The column buffer of a point cloud.
template <class T>
class RdbxData final : public Z4Data<T> {
 public:
  using Z4Data<T>::Z4Data;
  ~RdbxData() override = default;

  void publish(const Torvel::StrongPtr<Nimbra::FragmentID, Nimbra::FragmentID>& fragment, unsigned int count,
               const bool& isUTC, const ChunkCallback& callback) {
    this->publishBlock(fragment, count, isUTC, callback);
  }
};

/// Arguments of one call of the binder.
struct Binding {
  riegl::rdb::Pointcloud& database;
  riegl::rdb::pointcloud::QuerySelect& query;
  Nimbra::Grid& grid;
  bool loadAllAttributes;
};

/// Puts a fresh buffer into the slot, which releases the buffer of the last block, and binds it if asked to.
template <class T>
void makeBuffer(const Binding& binding, const RdbxRow& row, RdbxSlot& slot, bool bind) {
  const BufferReference<T> buffer(new RdbxData<T>(row.field, binding.grid, row.toChart,
                                                  recordsPerBlock * row.attribute.elementsPerRecord()));
  slot = buffer;
  if (bind) {
    const auto dataType = riegl::rdb::pointcloud::DataType(dataTypeOf(row.attribute.element));
    binding.query.bind(row.boundAttribute().name, dataType, buffer->firstElement(), 0);
  }
}

void makeBufferOfElement(const Binding& binding, const RdbxRow& row, RdbxSlot& slot, bool bind) {
  switch (row.attribute.element) {
  case ElementType::point:
    return makeBuffer<Quillon::PhysicalSpace::point>(binding, row, slot, bind);
  case ElementType::vector:
    return makeBuffer<Quillon::PhysicalSpace::vector>(binding, row, slot, bind);
  case ElementType::rgba:
    return makeBuffer<Quillon::ColourRGBA>(binding, row, slot, bind);
  case ElementType::float64:
    return makeBuffer<double>(binding, row, slot, bind);
  case ElementType::float32:
    return makeBuffer<float>(binding, row, slot, bind);
  case ElementType::int16:
    return makeBuffer<short>(binding, row, slot, bind);
  case ElementType::uint16:
    return makeBuffer<unsigned short>(binding, row, slot, bind);
  case ElementType::int32:
    return makeBuffer<int>(binding, row, slot, bind);
  case ElementType::uint32:
    return makeBuffer<unsigned int>(binding, row, slot, bind);
  case ElementType::uint64:
    return makeBuffer<unsigned long long>(binding, row, slot, bind);
  case ElementType::uint8:
    return makeBuffer<unsigned char>(binding, row, slot, bind);
  }
}

void bindRow(const Binding& binding, const RdbxRow& row, RdbxSlot& slot) {
  // The catalogue is asked before `onlyWithAll` is looked at, as the order of calls prescribes.
  const bool exists = binding.database.pointAttribute().exists(row.attribute.name);
  if (exists && row.onlyWithAll && !binding.loadAllAttributes) {
    return;
  }
  if (exists || row.bufferAlways) {
    makeBufferOfElement(binding, row, slot, exists);
  }
}

} // namespace

std::string bindRdbxColumns(riegl::rdb::Pointcloud& database, RdbxColumns& columns,
                            riegl::rdb::pointcloud::QuerySelect& query, Nimbra::Grid& grid,
                            const bool& loadAllAttributes, const bool& readWaveformAttributes) {
  const Binding binding{database, query, grid, loadAllAttributes};
  for (std::size_t i = 0; i < rdbxRowCount; ++i) {
    bindRow(binding, rdbxRows[i], columns.slots[i]);
    if (rdbxRows[i].statedTwice) {
      bindRow(binding, rdbxRows[i], columns.slots[i]);
    }
  }
  return readWaveformAttributes ? setWaveformAttributes(database, *columns.positions()) : std::string();
}

void publishRdbxColumns(RdbxColumns& columns,
                        const Torvel::StrongPtr<Nimbra::FragmentID, Nimbra::FragmentID>& fragment,
                        unsigned int count, const bool& isUTC, const ChunkCallback& callback) {
  const auto publish = [&]<class Slot>(const Slot& slot) {
    if constexpr (!std::is_same_v<Slot, std::monostate>) {
      [&]<class T>(const BufferReference<T>& buffer) {
        static_cast<RdbxData<T>&>(*buffer).publish(fragment, count, isUTC, callback);
      }(slot);
    }
  };
  for (const RdbxSlot& slot : columns.slots) {
    std::visit(publish, slot);
  }
}

} // namespace Riegl
