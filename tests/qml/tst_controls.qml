import QtQuick 2.15
import QtTest 1.15
import "qrc:/QmlFiles"

// Shared controls without models: range clamping and steps, the IP box's four
// parts, the combo pop-up, and the send field's hex rewrite helper.
Item {
    id: page
    width: 600
    height: 400

    Component { id: rangeBox; LmRangeInputBox { x: 20; y: 20; width: 180; height: 26 } }
    Component { id: ipBox; LmIPInputBox { x: 20; y: 80; singleBoxWidth: 40 } }
    Component { id: comboBox; LmComboBox { x: 20; y: 20; width: 180; height: 26 } }
    Component { id: spy; SignalSpy {} }

    TestCase {
        name: "Controls"
        when: windowShown

        function typeInto(input, text) {
            input.forceActiveFocus()
            input.selectAll()
            keyClick(Qt.Key_Delete)
            for (var i = 0; i < text.length; ++i)
                keyClick(text[i])
        }

        function test_range_data() {
            return [
                { tag: "typed inside the range", min: 0, max: 100, step: 1, start: 5, action: "42", expected: 42, edits: 1 },
                { tag: "typed above the maximum is clamped", min: 0, max: 100, step: 1, start: 5, action: "500", expected: 100, edits: 1 },
                { tag: "typed below the minimum is clamped", min: 10, max: 100, step: 1, start: 50, action: "3", expected: 10, edits: 1 },
                { tag: "negative value inside the range", min: -50, max: 50, step: 1, start: 0, action: "-7", expected: -7, edits: 1 },
                { tag: "limits never given take any value", min: 0, max: 0, step: 1, start: 0, action: "70000", expected: 70000, edits: 1 },
                { tag: "same value reports nothing", min: 0, max: 100, step: 1, start: 5, action: "5", expected: 5, edits: 0 },
                { tag: "empty text puts the value back", min: 0, max: 100, step: 1, start: 5, action: "", expected: 5, edits: 0 },
                { tag: "step up by the increment", min: 0, max: 100, step: 5, start: 5, action: "up", expected: 10, edits: 1 },
                { tag: "step up stops at the maximum", min: 0, max: 100, step: 5, start: 98, action: "up", expected: 100, edits: 1 },
                { tag: "step down stops at the minimum", min: 1, max: 100, step: 5, start: 3, action: "down", expected: 1, edits: 1 },
                { tag: "step down at the minimum reports nothing", min: 1, max: 100, step: 5, start: 1, action: "down", expected: 1, edits: 0 },
                { tag: "zero increment steps by one", min: 0, max: 100, step: 0, start: 5, action: "up", expected: 6, edits: 1 }
            ]
        }
        function test_range(data) {
            var box = createTemporaryObject(rangeBox, page, { minValue: data.min, maxValue: data.max,
                                                              step: data.step, currentValue: data.start })
            var edited = createTemporaryObject(spy, page, { target: box, signalName: "valueEdited" })
            if (data.action === "up" || data.action === "down") {
                mouseClick(findChild(box, data.action === "up" ? "stepUp" : "stepDown"))
            } else {
                var input = findChild(box, "rangeInput")
                typeInto(input, data.action)
                keyClick(Qt.Key_Return)
                compare(input.text, String(data.expected))
            }
            compare(box.currentValue, data.expected)
            compare(edited.count, data.edits)
            if (data.edits > 0)
                compare(edited.signalArguments[0][0], data.expected)
        }

        function test_range_pressOutsideConfirmsTheValue() {
            var box = createTemporaryObject(rangeBox, page, { minValue: 0, maxValue: 100, currentValue: 5 })
            var input = findChild(box, "rangeInput")
            typeInto(input, "77")
            mouseClick(page, 400, 300)
            tryCompare(box, "currentValue", 77)
            verify(!input.activeFocus)
        }

        function test_ipParts_data() {
            return [
                { tag: "four parts separated by dots", keys: "192.168.1.20", expected: "192.168.1.20", edits: 1 },
                { tag: "three digits move to the next part", keys: "1002002554", expected: "100.200.255.4", edits: 1 },
                { tag: "a part above 255 is not taken", keys: "300.1.2.3", expected: "30.1.2.3", edits: 1 },
                { tag: "an incomplete address is put back", keys: "10.1.2", expected: "10.0.0.1", edits: 0 },
                { tag: "the same address reports nothing", keys: "10.0.0.1", expected: "10.0.0.1", edits: 0 }
            ]
        }
        function test_ipParts(data) {
            var box = createTemporaryObject(ipBox, page, { currentIPString: "10.0.0.1" })
            var edited = createTemporaryObject(spy, page, { target: box, signalName: "ipEdited" })
            for (var i = 0; i < 4; ++i) {
                var part = findChild(box, "ipPart" + i)
                part.forceActiveFocus()
                part.selectAll()
                keyClick(Qt.Key_Delete)
            }
            findChild(box, "ipPart0").forceActiveFocus()
            for (var k = 0; k < data.keys.length; ++k)
                keyClick(data.keys[k])
            keyClick(Qt.Key_Return)
            tryCompare(box, "currentIPString", data.expected)
            compare(edited.count, data.edits)
            var shown = []
            for (var j = 0; j < 4; ++j)
                shown.push(findChild(box, "ipPart" + j).text)
            compare(shown.join("."), data.expected)
        }

        function test_ipShowsAnAddressSetFromOutside() {
            var box = createTemporaryObject(ipBox, page, { currentIPString: "10.0.0.1" })
            box.currentIPString = "172.16.5.9"
            compare(findChild(box, "ipPart0").text, "172")
            compare(findChild(box, "ipPart3").text, "9")
        }

        function test_backspaceInAnEmptyPartGoesBack() {
            var box = createTemporaryObject(ipBox, page, { currentIPString: "10.0.0.1" })
            var second = findChild(box, "ipPart1")
            second.forceActiveFocus()
            second.selectAll()
            keyClick(Qt.Key_Delete)
            keyClick(Qt.Key_Backspace)
            verify(findChild(box, "ipPart0").activeFocus)
        }

        function test_comboPopup_data() {
            return [
                { tag: "press outside closes", press: "outside", open: false, index: 1, picks: 0 },
                { tag: "press on the box toggles it closed", press: "box", open: false, index: 1, picks: 0 },
                { tag: "press inside the list picks an entry", press: "item2", open: false, index: 2, picks: 1 }
            ]
        }
        function test_comboPopup(data) {
            var box = createTemporaryObject(comboBox, page, { comboBoxListModel: ["Lang_ParityNone", "Lang_ParityOdd", "Lang_ParityEven"],
                                                             currentIndex: 1 })
            var picked = createTemporaryObject(spy, page, { target: box, signalName: "sigCurrentSelectItemChanged" })
            var updates = createTemporaryObject(spy, page, { target: box, signalName: "sigUpdateModel" })
            compare(findChild(box, "comboText").text, "Odd")
            mouseClick(box)
            var popup = findChild(box, "comboPopup")
            tryCompare(popup, "visible", true)
            compare(updates.count, 1)
            if (data.press === "outside")
                mouseClick(page, 500, 350)
            else if (data.press === "box")
                mouseClick(box)
            else {
                var list = popup.contentItem
                tryVerify(function() { return list.itemAtIndex(2) !== null }, 2000, "list entries laid out")
                mouseClick(list.itemAtIndex(2))
            }
            tryCompare(popup, "visible", data.open)
            compare(box.currentIndex, data.index)
            compare(picked.count, data.picks)
        }

        function test_comboPopupKeepsTheWheelFromOtherControls() {
            var combo = createTemporaryObject(comboBox, page, { comboBoxListModel: ["a", "b"], currentIndex: 0, x: 300 })
            var box = createTemporaryObject(rangeBox, page, { minValue: 0, maxValue: 100, currentValue: 5 })
            var input = findChild(box, "rangeInput")
            input.forceActiveFocus()
            mouseWheel(input, 10, 10, 0, 120)
            compare(box.currentValue, 6)
            mouseClick(combo)
            tryCompare(findChild(combo, "comboPopup"), "visible", true)
            input.forceActiveFocus()
            mouseWheel(input, 10, 10, 0, 120)
            compare(box.currentValue, 6)
            verify(findChild(combo, "comboPopup").visible)
        }
    }
}
