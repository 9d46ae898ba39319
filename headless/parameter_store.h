// The host's parameter records and their values.
#ifndef VITRELL_HEADLESS_PARAMETER_STORE_H_
#define VITRELL_HEADLESS_PARAMETER_STORE_H_

#include <optional>
#include <vector>

#include "headless/parameters.h"
#include "host/host_api.h"

namespace vitrell::headless {

// Record 0 is the input layer. Points hold percent of the layer in 16.16 fixed point until they are
// set in pixels.
class ParameterStore {
 public:
  ParameterStore();

  // Appends a record as registered and sets its value to the default.
  void Add(const PF_ParamDef& record);
  void Reset();

  const std::vector<Parameter>& All() const { return parameters_; }
  int Count() const { return static_cast<int>(records_.size()); }
  // These throw HostError for a wrong index, the last one for a wrong type too.
  PF_ParamDef& Record(int index);
  const PF_ParamDef& Record(int index) const;
  PF_ParamDef& Record(int index, PF_ParamType type);

  void SetPointPixels(int index, double x, double y);
  void SetPointPercent(int index, double x, double y);
  std::optional<PointPercent> PercentOf(int index) const;

  // Applies what an effect may change through PF_UpdateParamUI: ui flags and the collapse bit.
  void UpdateUI(int index, const PF_ParamDef& wanted);

  // Copies of all records with points converted to pixels of a layer of this size; size 0 leaves
  // them in percent. Layer parameters are empty and change flags 0.
  std::vector<PF_ParamDef> RecordsForSize(A_long width, A_long height) const;

 private:
  std::vector<PF_ParamDef> records_;
  std::vector<std::optional<PointPercent>> percents_;
  std::vector<Parameter> parameters_;
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_PARAMETER_STORE_H_
