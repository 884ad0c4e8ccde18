.pragma library

// Rewrites of the send field when "send as hex" is switched.

// Each character becomes its code as upper-case hexadecimal digits (at least
// two), separated by single blanks: "AB" -> "41 42".
function toHex(text) {
    var codes = []
    for (var i = 0; i < text.length; ++i) {
        var digits = text.charCodeAt(i).toString(16).toUpperCase()
        codes.push(digits.length < 2 ? "0" + digits : digits)
    }
    return codes.join(" ")
}

// Back to text: blanks removed, each following pair of hexadecimal digits
// becomes the character with that code, an odd last digit is dropped. A
// pair that is not hexadecimal is skipped.
function fromHex(hex) {
    var digits = hex.replace(/ /g, "")
    var text = ""
    for (var i = 0; i + 1 < digits.length; i += 2) {
        var pair = digits.substr(i, 2)
        if (!/^[0-9A-Fa-f]{2}$/.test(pair))
            continue
        text += String.fromCharCode(parseInt(pair, 16))
    }
    return text
}
