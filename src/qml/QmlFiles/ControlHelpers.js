.pragma library

// Whether a global (screen) position lies inside an item.
function containsGlobal(item, globalPos) {
    if (!item || !item.visible)
        return false
    var p = item.mapToGlobal(0, 0)
    return globalPos.x >= p.x && globalPos.y >= p.y
            && globalPos.x < p.x + item.width && globalPos.y < p.y + item.height
}

// Whether minValue..maxValue is a range to clamp to. Limits that were never
// given are both 0, and then any value is taken.
function hasRange(minValue, maxValue) {
    return minValue <= maxValue && !(minValue === 0 && maxValue === 0)
}

function clamp(value, minValue, maxValue) {
    if (!hasRange(minValue, maxValue))
        return value
    return Math.min(Math.max(value, minValue), maxValue)
}
