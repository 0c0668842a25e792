// Calls the gateway the way a host environment does: operation name first, arguments
// as host arrays, results in output slots, failures as message-ID errors.
#include <array>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <vector>

#include "netcdflib.hpp"
#include "qvhost/qvhost.hpp"

namespace {

using Outputs = std::array<qvArrayPtr, kNetcdflibMaxOutputs>;

qvArrayPtr charRow(const std::string& text) { return matrix::create(text.data(), text.size()); }

// Runs one operation; the first output is returned.
qvArrayPtr call(const std::string& operation, std::initializer_list<const qvArray*> arguments) {
  const qvArrayPtr name = charRow(operation);
  std::vector<const qvArray*> inputs{name.get()};
  inputs.insert(inputs.end(), arguments);
  Outputs outputs;
  netcdflib(1, outputs.data(), static_cast<int>(inputs.size()), inputs.data());
  return std::move(outputs[0]);
}

std::string toUtf8(const std::u16string& text) {
  return codecvt_ustring_to_string("UTF-8", false).do_convert(text.data(), text.size());
}

std::string charText(const qvArray* a) { return toUtf8(matrix::get_ustring(a)); }

std::string number(double v) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.10g", v);
  return text.data();
}

// The value of a 1-by-1 result, with its class.
std::string scalarText(const qvArray* a) {
  const void* data = qvGetData(a);
  switch (qvGetClassID(a)) {
    case qvDOUBLE_CLASS:
      return "double " + number(*static_cast<const double*>(data));
    case qvSINGLE_CLASS:
      return "single " + number(*static_cast<const float*>(data));
    case qvINT32_CLASS:
      return "int32 " + std::to_string(*static_cast<const std::int32_t*>(data));
    default:
      return "(class " + std::to_string(qvGetClassID(a)) + ")";
  }
}

void showParameter(const std::string& constant) {
  const qvArrayPtr nameArg = charRow(constant);
  const qvArrayPtr value = call("parameter", {nameArg.get()});
  std::printf("  parameter %-16s -> %s\n", constant.c_str(), scalarText(value.get()).c_str());
}

}  // namespace

int main() {
  const qvArrayPtr names = call("getConstantNames", {});
  const std::size_t count = qvGetNumberOfElements(names.get());
  std::printf("getConstantNames: %zu names, first %s, last %s\n", count,
              charText(qvGetCell(names.get(), 0)).c_str(),
              charText(qvGetCell(names.get(), count - 1)).c_str());

  std::printf("Some constants:\n");
  for (const char* constant : {"NC_NETCDF4", "clobber", "NC_FILL_INT", "fill_float", "NC2_ERR"}) {
    showParameter(constant);
  }

  std::printf("An unknown constant:\n");
  try {
    showParameter("NC_NOPE");
  } catch (const foundation::core::except::IMsgIDException& e) {
    std::printf("  error %s\n  text  %s\n", e.get_error_id().c_str(),
                toUtf8(e.GetUnicodeMessageTxt()).c_str());
  }
  QNTerminate();
  return 0;
}
