# Writes the bytes of INPUT to OUTPUT as a list of numbers, for the initialiser of an array.
file(READ "${INPUT}" bytes HEX)
string(REGEX REPLACE "(..)" "0x\\1," numbers "${bytes}")
string(REPEAT "....." 16 line)
string(REGEX REPLACE "(${line})" "\\1\n" numbers "${numbers}")
file(WRITE "${OUTPUT}" "${numbers}\n")
