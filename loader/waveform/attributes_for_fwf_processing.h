// SPDX-License-Identifier: BSD-3-Clause
// The record that carries a scan's instrument and atmosphere to later full-waveform processing.
#pragma once

#include <rdb2nimbra/client.h>
#include <rdb2nimbra/export.h>

#include "model/nimbra/grid.h"
#include "model/torvel/references/chunk.h"

#include <string>

namespace Riegl {

/// What full-waveform processing has to know about a scanner, beside the columns of its database.
///
/// A plain value. The arrays are held by strong pointers; a copy of the record shares them, and so do the
/// attributes that it is attached to. The four arrays `a_real` to `b_imag` describe the system wave as a sum
/// of decaying oscillations with the complex amplitude factors a = a_real + i a_imag and the complex
/// exponents b = b_real + i b_imag; after a successful read either all four are valid or none is.
///
/// \threads a record belongs to the thread that made it; the counts of shared arrays are atomic
class AttributesForFWFProcessing {
 public:
  using GridPointer =
      Torvel::StrongPtr<Nimbra::Grid,
                        Nimbra::Ownable<Nimbra::BaseSpace, Nimbra::ChildrenProperties>::Container>;
  using FieldPointer =
      Torvel::StrongPtr<Nimbra::Field, Nimbra::Ownable<Nimbra::CreativeArrayBase,
                                                       Nimbra::CreativeArrayBaseContainerBase>::Container>;

  double group_velocity = 0;  ///< of the laser beam, m/s
  double sample_interval = 0; ///< of the waveform samples, s
  double wavelength = 0;      ///< of the laser, nm; narrowed to float wherever it is attached
  double t_ref = 0;           ///< time reference: the negated `delta_st`, in the metadata's own unit
  std::string serial_number;
  std::string device_type;
  std::string time_base;                     ///< the whole metadata item as indented JSON
  double SHOT_TIMESTAMP_HR_RESOLUTION = 0;   ///< tick of the high-resolution shot time stamp, s
  double WFM_SBL_TIME_OFFSET_RESOLUTION = 0; ///< tick of the time offset of a sample block, s
  std::string build;                         ///< build variant of the device
  double unambiguous_range = 0;              ///< width of one zone without range ambiguity, m
  Torvel::StrongPtr<Torvel::Chunk<double>, Torvel::ChunkBase> a_real; ///< (n) in units of full scale
  Torvel::StrongPtr<Torvel::Chunk<double>, Torvel::ChunkBase> a_imag; ///< (n) in units of full scale
  Torvel::StrongPtr<Torvel::Chunk<double>, Torvel::ChunkBase> b_real; ///< (n) decay, 1/s
  Torvel::StrongPtr<Torvel::Chunk<double>, Torvel::ChunkBase> b_imag; ///< (n) angular frequency, Hz
  double refl_delta = 0.1373470495519926;                             ///< step of the reflectance calculation
  Torvel::StrongPtr<Torvel::Chunk<float>, Torvel::ChunkBase> refl_tableC; ///< (n) reflectance table
  double ampl_unit = 0.01f; ///< unit of amplitudes: the single-precision 0.01, widened

  /// The record as lines of text, one value a line: the scalars, and of a reflectance table the first three
  /// elements and a closing line. Of a table with fewer elements the text has those that there are, and no
  /// closing line. Numbers are the shortest text that reads back to the same value. Prints nothing.
  RDB2NIMBRA_EXPORT std::string speak() const;

  /// Replaces the time reference by one that the caller knows better, and says so with a fixed line on the
  /// console.
  ///
  /// \param value  the final value of `t_ref`; its sign is not changed
  RDB2NIMBRA_EXPORT void overwrite_t_ref(const double& value);

  /// Fills the record from the metadata of an open database. A record that was filled before is read anew;
  /// `refl_delta`, `ampl_unit`, the reflectance table and the system wave keep their earlier values where the
  /// database has none.
  ///
  /// \returns the empty text; or "Error: Key not found" where the atmosphere, the waveform, the device's
  ///          serial number or the time base can't be read: then the members up to there are filled, and the
  ///          later ones have their earlier values
  /// \errors  riegl::rdb::Error of the client passes through. Metadata that is no JSON object is reported on
  ///          std::cerr, the rest on the console.
  RDB2NIMBRA_EXPORT std::string getAttributesViaJson(const riegl::rdb::Pointcloud& pointcloud);

  /// Hangs the record on the objects of a data set, as attributes; those of the same names are replaced. The
  /// arrays are shared, all else is copied.
  ///
  /// \param waveformGrid   receives the sample interval and the scanner's identity, if `waveformField` is
  ///                       valid
  /// \param pointGrid      receives the scanner's identity, the unambiguous range and, if there is a table that
  ///                       isn't empty, the reflectance calculation
  /// \param waveformField  receives the sample interval and the system wave; if it is null, the first grid and
  ///                       both fields are left alone
  /// \param tRefField      receives the time reference, if `waveformField` is valid
  /// \param rdbSegment     stored on both grids
  /// \returns the empty text; where an object that was to be touched is null, a text that names it, after
  ///          everything else has been attached
  /// \errors  whatever setAttribute raises passes through, and what was set so far stays
  /// \threads the caller must be the only user of the four objects
  RDB2NIMBRA_EXPORT std::string addAttributeToZ4File(const GridPointer& waveformGrid,
                                                     const GridPointer& pointGrid,
                                                     const FieldPointer& waveformField,
                                                     const FieldPointer& tRefField,
                                                     const int& rdbSegment) const;
};

} // namespace Riegl
