#include "cli/json_writer.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace mw {

void JsonWriter::separate() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (!first_.empty()) {
        if (!first_.back()) out_.push_back(',');
        first_.back() = false;
    }
}

JsonWriter& JsonWriter::beginObject() {
    separate();
    out_.push_back('{');
    first_.push_back(true);
    return *this;
}

JsonWriter& JsonWriter::endObject() {
    out_.push_back('}');
    first_.pop_back();
    return *this;
}

JsonWriter& JsonWriter::beginArray() {
    separate();
    out_.push_back('[');
    first_.push_back(true);
    return *this;
}

JsonWriter& JsonWriter::endArray() {
    out_.push_back(']');
    first_.pop_back();
    return *this;
}

JsonWriter& JsonWriter::key(std::string_view name) {
    value(name);
    out_.push_back(':');
    afterKey_ = true;
    return *this;
}

JsonWriter& JsonWriter::value(std::string_view utf8) {
    separate();
    out_.push_back('"');
    for (char c : utf8) {
        const auto b = static_cast<unsigned char>(c);
        switch (c) {
            case '"':
                out_ += "\\\"";
                break;
            case '\\':
                out_ += "\\\\";
                break;
            case '\n':
                out_ += "\\n";
                break;
            case '\r':
                out_ += "\\r";
                break;
            case '\t':
                out_ += "\\t";
                break;
            default:
                if (b < 0x20) {
                    char buf[8];
                    std::snprintf(buf, sizeof buf, "\\u%04x", b);
                    out_ += buf;
                } else {
                    out_.push_back(c);
                }
        }
    }
    out_.push_back('"');
    return *this;
}

JsonWriter& JsonWriter::value(std::int64_t v) {
    separate();
    out_ += std::to_string(v);
    return *this;
}

JsonWriter& JsonWriter::value(float v) {
    if (!std::isfinite(v)) return null();
    separate();
    char buf[32];
    const auto result = std::to_chars(buf, buf + sizeof buf, v);
    out_.append(buf, result.ptr);
    return *this;
}

JsonWriter& JsonWriter::value(bool v) {
    separate();
    out_ += v ? "true" : "false";
    return *this;
}

JsonWriter& JsonWriter::value(Vector3 v) {
    beginArray();
    value(v.X).value(v.Y).value(v.Z);
    return endArray();
}

JsonWriter& JsonWriter::null() {
    separate();
    out_ += "null";
    return *this;
}

}  // namespace mw
