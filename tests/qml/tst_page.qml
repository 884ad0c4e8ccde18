import QtQuick 2.15
import QtTest 1.15
import comm.devicesManager 1.0
import test.gateway 1.0
import test.host 1.0
import "qrc:/QmlFiles"

// The root page: title bar, navigation bar (one tab for operators, all six
// with the developer switch), page stack.
Item {
    id: page
    width: 1130
    height: 680

    Component { id: rootPage; CommManagerModuleDialog {} }

    TestCase {
        name: "RootPage"
        when: windowShown

        function init() {
            TestGateway.reset()
            MainWindow.reset()
            TestHost.takeWarnings()
        }
        function cleanup() {
            TestHost.setDevPages("")
        }

        // The event, trigger, response and heartbeat tabs and pages exist only
        // with the developer switch; a tab's name opens that tab first.
        function test_tabsFollowTheDeveloperSwitch_data() {
            var all = ["deviceMng", "recvMsg", "sendMsg", "trigger", "respond", "heart"]
            return [
                { tag: "no switch: the device manager only", value: "", shown: ["deviceMng"], first: "deviceMng" },
                { tag: "switch 0: the device manager only", value: "0", shown: ["deviceMng"], first: "deviceMng" },
                { tag: "switch 1: every tab", value: "1", shown: all, first: "deviceMng" },
                { tag: "switch naming a tab opens it", value: "heart", shown: all, first: "heart" },
                { tag: "switch naming no tab", value: "nosuchtab", shown: all, first: "deviceMng" }
            ]
        }
        function test_tabsFollowTheDeveloperSwitch(data) {
            TestHost.setDevPages(data.value)
            var root = createTemporaryObject(rootPage, page)
            compare([root.width, root.height], [1130, 680])
            compare(findChild(root, "titleBar").height, 32)
            compare(findChild(root, "navigationBar").width, 97)
            compare(findChild(root, "titleText").text, "Communication Settings")
            var names = ["deviceMng", "recvMsg", "sendMsg", "trigger", "respond", "heart"]
            var stack = findChild(root, "pageStack")
            var shown = []
            for (var i = 0; i < names.length; ++i) {
                var tab = findChild(root, "tab_" + names[i])
                verify(tab !== null, names[i])
                if (tab.visible) {
                    compare([tab.width, tab.height], [96, 92])
                    shown.push(names[i])
                }
                // A switched-off page is never made.
                if (i > 0)
                    compare(findChild(root, "page_" + names[i]).item !== null, data.shown.length > 1, names[i])
            }
            compare(shown, data.shown)
            compare(stack.currentIndex, names.indexOf(data.first))
            for (var t = data.shown.length - 1; t >= 0; --t) {
                mouseClick(findChild(root, "tab_" + data.shown[t]))
                compare(stack.currentIndex, t)
                var current = t === 0 ? findChild(root, "deviceManagementView") : findChild(root, "page_" + data.shown[t])
                verify(current.visible, data.shown[t])
            }
            compare(TestHost.takeWarnings(), [])
        }

        function test_closeButtonHidesTheWindow() {
            var root = createTemporaryObject(rootPage, page)
            mouseClick(findChild(root, "closeButton"))
            compare(MainWindow.hideCount, 1)
        }

        function test_draggingTheTitleMovesTheWindow() {
            var root = createTemporaryObject(rootPage, page)
            var bar = findChild(root, "titleBar")
            mousePress(bar, 300, 10)
            mouseMove(bar, 340, 25)
            mouseRelease(bar, 340, 25)
            compare(MainWindow.x, 40)
            compare(MainWindow.y, 15)
        }
    }
}
