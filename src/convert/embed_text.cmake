# Turns a text file into a C++ source that holds it as one string: IN, OUT, NAME.
file(READ "${IN}" text)
string(REPLACE "\\" "\\\\" text "${text}")
string(REPLACE "\"" "\\\"" text "${text}")
string(REPLACE "\n" "\\n\"\n\"" text "${text}")
file(WRITE "${OUT}" "// Made from ${IN} at build time.\nnamespace mw {\nextern const char* const ${NAME};\nconst char* const ${NAME} =\n\"${text}\";\n}  // namespace mw\n")
