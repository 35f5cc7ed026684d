// A small streaming JSON writer. Floats are written in their shortest form that reads
// back to the same 32-bit value; non-finite floats become null.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "math/vector.h"

namespace mw {

class JsonWriter {
  public:
    JsonWriter& beginObject();
    JsonWriter& endObject();
    JsonWriter& beginArray();
    JsonWriter& endArray();
    JsonWriter& key(std::string_view name);

    JsonWriter& value(std::string_view utf8);
    JsonWriter& value(const char* utf8) { return value(std::string_view(utf8)); }
    JsonWriter& value(std::int64_t v);
    JsonWriter& value(int v) { return value(static_cast<std::int64_t>(v)); }
    JsonWriter& value(unsigned v) { return value(static_cast<std::int64_t>(v)); }
    JsonWriter& value(float v);
    JsonWriter& value(bool v);
    JsonWriter& value(Vector3 v);
    JsonWriter& null();

    // key(name).value(v)
    template <typename T>
    JsonWriter& field(std::string_view name, const T& v) {
        return key(name).value(v);
    }

    const std::string& str() const { return out_; }

  private:
    void separate();

    std::string out_;
    std::vector<bool> first_;  // per open container: nothing written in it yet
    bool afterKey_ = false;
};

}  // namespace mw
