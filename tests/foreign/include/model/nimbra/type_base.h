// SPDX-License-Identifier: BSD-3-Clause
// Objects that describe element types.
#pragma once

#include "model/torvel/references/typed_chunk.h"

#include <string>

namespace Nimbra {

struct TORVEL_API NimbraTypeIndex {
  std::int32_t components = 0;
  std::int32_t elementBytes = 0;
  std::int32_t vectorFlagA = 0;
  std::int32_t vectorFlagB = 0;
  std::int32_t componentBytes = 0;
  std::string typeName;
  std::string componentName;
  std::string chartName;
  std::int32_t dimensions = 0;
};

class TORVEL_API NimbraTypeBase : public Torvel::ReferenceBase<NimbraTypeBase>, public NimbraTypeIndex {
 public:
  ~NimbraTypeBase() override;
  virtual const std::type_info& elementType() const = 0;
  virtual bool isElementType(const std::type_info& type) const = 0;
  virtual Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase> create(std::size_t count) const = 0;
  virtual std::uint32_t firstWord(const void* value) const = 0;
  virtual Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase> self() = 0;
  virtual std::string suffix() const = 0;
  virtual const std::type_info& domainType() const = 0;
  virtual int reservedA() const = 0;
  virtual int reservedB() const = 0;
  void remember(); // nothing: the table of creators knows all types

 protected:
  explicit NimbraTypeBase(const NimbraTypeIndex& index);
};

} // namespace Nimbra
