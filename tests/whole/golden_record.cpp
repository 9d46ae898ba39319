// Stores goldens in a file and renders them again.
#include "whole/golden_record.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "whole/literal_bridge.h"

namespace vitrell::whole {
namespace {

constexpr double kFixedOne = 65536;

ControlNumbers NumbersOf(const PF_ParamDef& record) {
  switch (record.param_type) {
    case PF_Param_FLOAT_SLIDER:
      return {record.u.fs_d.value};
    case PF_Param_POPUP:
      return {static_cast<double>(record.u.pd.value)};
    case PF_Param_CHECKBOX:
      return {static_cast<double>(record.u.bd.value)};
    case PF_Param_POINT:
      return {record.u.td.x_value / kFixedOne, record.u.td.y_value / kFixedOne};
    case PF_Param_ANGLE:
      return {record.u.ad.value / kFixedOne};
    case PF_Param_COLOR: {
      const PF_Pixel& colour = record.u.cd.value;
      return {static_cast<double>(colour.alpha), static_cast<double>(colour.red),
              static_cast<double>(colour.green), static_cast<double>(colour.blue)};
    }
    default:
      return {};
  }
}

void SetControl(headless::EffectHost& host, int index, const ControlNumbers& numbers) {
  const auto byte = [&](std::size_t i) { return static_cast<A_u_char>(numbers[i]); };
  switch (host.Record(index).param_type) {
    case PF_Param_FLOAT_SLIDER:
      return host.SetFloat(index, numbers[0]);
    case PF_Param_POPUP:
      return host.SetPopup(index, static_cast<A_long>(numbers[0]));
    case PF_Param_CHECKBOX:
      return host.SetCheckbox(index, numbers[0] != 0);
    case PF_Param_POINT:
      return host.SetPointPixels(index, numbers[0], numbers[1]);
    case PF_Param_ANGLE:
      return host.SetAngleDegrees(index, numbers[0]);
    case PF_Param_COLOR:
      return host.SetColor(index, {byte(0), byte(1), byte(2), byte(3)});
    default:
      return;
  }
}

// Plain values byte for byte; lists preceded by their length.
class Writer {
 public:
  explicit Writer(std::ostream& out) : out_(out) {}

  template <typename T>
  void Put(const T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    out_.write(reinterpret_cast<const char*>(&value), sizeof(value));
  }
  template <typename List>
  void PutList(const List& list) {
    Put(std::uint64_t{list.size()});
    for (const auto& element : list) Put(element);
  }
  void PutWorld(const literal::World& world) {
    Put(std::int32_t{world.deep ? 1 : 0});
    Put(world.width);
    Put(world.height);
    Put(world.extent);
    PutList(world.pixels);
  }

 private:
  std::ostream& out_;
};

class Reader {
 public:
  explicit Reader(std::istream& in) : in_(in) {}

  template <typename T>
  T Take() {
    T value{};
    if (!in_.read(reinterpret_cast<char*>(&value), sizeof(value))) {
      throw std::runtime_error("the golden records are cut off");
    }
    return value;
  }
  template <typename List>
  List TakeList() {
    List list;
    const auto size = Take<std::uint64_t>();
    for (std::uint64_t i = 0; i < size; ++i) {
      list.push_back(Take<typename List::value_type>());
    }
    return list;
  }
  literal::World TakeWorld() {
    literal::World world;
    world.deep = Take<std::int32_t>() != 0;
    world.width = Take<std::int32_t>();
    world.height = Take<std::int32_t>();
    world.extent = Take<literal::Rect>();
    world.pixels = TakeList<std::vector<literal::Pixel>>();
    return world;
  }

 private:
  std::istream& in_;
};

}  // namespace

std::vector<ControlNumbers> ReadControls(const headless::EffectHost& host) {
  std::vector<ControlNumbers> controls;
  for (const headless::Parameter& parameter : host.Parameters()) {
    controls.push_back(NumbersOf(host.Record(parameter.index)));
  }
  return controls;
}

GoldenRecord RenderRecord(const GoldenRecord& record,
                          std::shared_ptr<const headless::EffectModule> module) {
  headless::EffectHost host{std::move(module)};
  EXPECT_EQ(host.Parameters().size(), record.controls.size());
  for (std::size_t i = 0; i < record.controls.size(); ++i) {
    SetControl(host, static_cast<int>(i), record.controls[i]);
  }
  const headless::WorldBuffer input = FromLiteral(record.input);
  std::optional<headless::WorldBuffer> custom;
  if (record.custom.has_value()) custom.emplace(FromLiteral(*record.custom));
  headless::WorldBuffer output(input.Width(), input.Height(), input.Deep());
  const headless::RenderResult result =
      host.Render(input, output, custom.has_value() ? &*custom : nullptr);
  EXPECT_EQ(result.error, 0) << record.name << ": " << result.description;
  return {record.name,   ReadControls(host), record.input,
          record.custom, ToLiteral(output),  headless::CallTexts(result.calls)};
}

void CutAtWhite(literal::World& world) {
  constexpr std::uint16_t kDeepWhite = 32768;
  const std::uint16_t white = world.deep ? kDeepWhite : std::uint16_t{255};
  for (literal::Pixel& pixel : world.pixels) {
    for (std::uint16_t& channel : pixel.channel) channel = std::min(channel, white);
  }
}

void WriteGoldenRecords(const std::filesystem::path& file,
                        const std::vector<GoldenRecord>& records) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  Writer writer(out);
  writer.Put(std::uint64_t{records.size()});
  for (const GoldenRecord& record : records) {
    writer.PutList(record.name);
    writer.PutList(record.controls);
    writer.PutWorld(record.input);
    writer.Put(std::int32_t{record.custom.has_value() ? 1 : 0});
    if (record.custom.has_value()) writer.PutWorld(*record.custom);
    writer.PutWorld(record.output);
    writer.Put(std::uint64_t{record.calls.size()});
    for (const std::string& call : record.calls) writer.PutList(call);
  }
  out.close();
  if (!out) throw std::runtime_error(file.string() + " cannot be written");
}

std::vector<GoldenRecord> ReadGoldenRecords(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  Reader reader(in);
  std::vector<GoldenRecord> records(reader.Take<std::uint64_t>());
  for (GoldenRecord& record : records) {
    record.name = reader.TakeList<std::string>();
    record.controls = reader.TakeList<std::vector<ControlNumbers>>();
    record.input = reader.TakeWorld();
    if (reader.Take<std::int32_t>() != 0) record.custom = reader.TakeWorld();
    record.output = reader.TakeWorld();
    record.calls.resize(reader.Take<std::uint64_t>());
    for (std::string& call : record.calls) call = reader.TakeList<std::string>();
  }
  return records;
}

}  // namespace vitrell::whole
