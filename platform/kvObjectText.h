#pragma once

#include "kv_export.h"

// The text form of component streams and the converters between it and the binary form
// ("TPF0", see kvFiler.h). The text form of an object:
//
//   object Form1: TForm1              'inherited' or 'inline' for those prefix flags; no
//     Left = 192                      'Name: ' for an unnamed object; ' [n]' after the class
//     Caption = 'It''s'#13#10'two'    for a child position
//     font.Name = 'Sans'
//     Items.Strings = (
//       'a'
//       'b')
//     Data = {
//       0A0B0C}
//     Options = [opOne, opTwo]
//     Ref = Form2.Button1
//     Empty = nil
//     Items = <
//       item
//         Caption = 'x'
//       end
//       item [3]
//       end>
//     object Button1: TButton [2]
//       OnClicked = Button1Click
//     end
//   end
//
// Two spaces of indent per level, lines end in LF (CR LF and CR are read too). Strings are
// quoted with '' doubling; characters below 32 and above 126 are written as #n (the decimal
// UTF-16 code) outside the quotes. A string longer than 64 characters is cut into pieces of
// 64, each line but the last ending in " +", the next piece on a new line one level deeper
// than the line the value starts on; binary data is written in lines of 32 bytes of
// upper-case hex one level deeper, the "}" right after the last byte; list items each on a
// line of their own one level deeper, the ")" right after the last. Tag 0 as a value is
// "Null", True, False and nil are those words. Numbers are in the C locale: integers as they
// are; extended floats as the shortest text that reads back as the same double, always with a
// "." or an exponent ("2.0", "1E300", "5E-324"); single, currency and date the same with the
// suffix s, c and d ("0.1s", "12.5c", "45000.5d"); infinities and NaN as "+Inf", "-Inf",
// "+NaN", "-NaN" (with the suffix where there is one). Text typed by hand may also use
// keywords in any case, "$1F" hex integers, "#$41" character codes and UTF-8 (or
// Windows-1252) inside quotes. A property may be named like a keyword ("end = 1"): a name
// followed by "=" or "." is always a property.
//
// Binary to text to binary gives back the same bytes for the streams the component writer
// makes. Two places depend on that canonical coding:
// - integers are read back in the smallest code that holds them (int8, int16, int32, int64)
//   and strings as short or long strings when they are ASCII only, else as wide strings;
//   a prefix byte is written only with flags set (inherited or inline, each with or
//   without a child position; other flags are errors) or before a class name of 240
//   characters or more, whose length byte would look like one;
// - an extended float is written as the double nearest to it, which is exact for every
//   extended made from a double; an identifier spelled True, False, nil or Null reads back
//   as that value.
// Any other stream still converts to the same values. Names and identifiers must be valid
// names of the text form (letters, digits, underscores; dots in property names and
// identifier values).
//
// Both converters read one object from the input's position and leave a device that can
// seek just after it. Corrupt, truncated or hostile input raises kv::Exception (text errors
// name the line; binary errors the offset from the object's signature): lengths beyond the
// bytes left and nesting deeper than 1,000 levels are errors. The output may then hold the
// part written before the error.

class QIODevice;

namespace kv {

KV_EXPORT void ObjectBinaryToText(QIODevice &Input, QIODevice &Output);
KV_EXPORT void ObjectTextToBinary(QIODevice &Input, QIODevice &Output);

// The same with the 16-bit resource header before the binary form: the byte 0xFF, the 16-bit
// type 10, the resource name zero-terminated (written as the root's class name in upper
// case), 16-bit flags (0x1030 written) and the 32-bit size of the stream that follows.
KV_EXPORT void ObjectResourceToText(QIODevice &Input, QIODevice &Output);
KV_EXPORT void ObjectTextToResource(QIODevice &Input, QIODevice &Output);

} // namespace kv
