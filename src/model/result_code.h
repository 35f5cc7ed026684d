// Result codes of the model and room readers.
#pragma once

namespace mw {

enum class ResultCode : int {
    Success = 0,
    NotOOF = 1,
    OOFVersionTooLow = 2,
    NoOOFData = 3,
    OOFReadError = 4,
    NoORFData = 5,
    ORFVersionTooLow = 6,
    ORFReadError = 7,
};

// The user's text for a result code; any other code gives an empty text.
const char* TranslateError(int code);
inline const char* TranslateError(ResultCode code) {
    return TranslateError(static_cast<int>(code));
}

}  // namespace mw
