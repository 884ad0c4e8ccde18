import QtQuick 2.15
import QtTest 1.15
import comm.devicesManager 1.0
import test.gateway 1.0
import "qrc:/QmlFiles"

// The root page: title bar, navigation bar with its one active tab, page stack.
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
        }

        function test_onlyTheDeviceManagerTabIsShown() {
            var root = createTemporaryObject(rootPage, page)
            compare([root.width, root.height], [1130, 680])
            compare(findChild(root, "titleBar").height, 32)
            compare(findChild(root, "navigationBar").width, 97)
            var shown = []
            var names = ["deviceMng", "recvMsg", "sendMsg", "trigger", "respond", "heart"]
            for (var i = 0; i < names.length; ++i) {
                var tab = findChild(root, "tab_" + names[i])
                verify(tab !== null, names[i])
                if (tab.visible) {
                    compare([tab.width, tab.height], [96, 92])
                    shown.push(names[i])
                }
            }
            compare(shown, ["deviceMng"])
            compare(findChild(root, "pageStack").count, 1)
            compare(findChild(root, "titleText").text, "Communication Settings")
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
