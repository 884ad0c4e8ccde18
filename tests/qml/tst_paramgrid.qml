import QtQuick 2.15
import QtTest 1.15
import comm.devicesManager 1.0
import test.gateway 1.0
import "qrc:/QmlFiles"

// The parameter grid of every shipped device type, as the panel lays it out:
// each heading stands over the items of its own group (their Group attribute
// in the description), also after every choice item has taken each of its
// values (a trigger may have hidden or shown items meanwhile).
//
// Read row by row, a heading in the left cell starts a section. With a second
// heading beside it, each column below belongs to its own heading; otherwise
// every cell up to the next section belongs to the one heading. A heading in
// the right cell beside an item stands over whatever follows in that column.
Item {
    id: page
    width: 780
    height: 600

    Component { id: panelComponent; ItemPanel { width: 780; height: 600 } }

    TestCase {
        name: "ParameterGrid"
        when: windowShown

        // What is wrong with the grid as it stands, one text per fault.
        function gridFaults(grid, groups) {
            var cells = []
            for (var i = 0; i < grid.children.length; ++i) {
                if (grid.children[i].visible)
                    cells.push(grid.children[i])
            }
            cells.sort(function(a, b) { return a.y - b.y || a.x - b.x })
            var faults = []
            var section = null // { left: heading, right: heading or null }
            var owned = {}     // heading -> number of its items under it
            for (var k = 0; k < cells.length; ++k) {
                var name = cells[k].pItemData.objectName
                var info = groups[name] || { heading: false, group: "" }
                var rightCell = cells[k].x > 0
                if (info.heading && !rightCell) {
                    var beside = k + 1 < cells.length && cells[k + 1].y === cells[k].y
                            ? cells[k + 1].pItemData.objectName : ""
                    var pair = beside !== "" && groups[beside] && groups[beside].heading
                    section = { left: name, right: pair ? beside : null }
                    owned[name] = 0
                    if (pair) {
                        owned[beside] = 0
                        ++k
                    }
                    continue
                }
                if (info.heading) {
                    faults.push(name + " stands beside " + cells[k - 1].pItemData.objectName)
                    continue
                }
                if (section === null) {
                    faults.push(name + " stands above every heading")
                    continue
                }
                var heading = section.right !== null && rightCell ? section.right : section.left
                if (info.group !== heading)
                    faults.push(name + " (group \"" + info.group + "\") stands under " + heading)
                else
                    ++owned[heading]
            }
            for (var h in owned) {
                if (owned[h] === 0)
                    faults.push(h + " stands over none of its items")
            }
            return faults
        }
        function checkGrid(panel, groups, state) {
            var grid = findChild(panel, "paramGrid")
            grid.forceLayout()
            var faults = gridFaults(grid, groups)
            verify(faults.length === 0, state + ": " + faults.join("; "))
        }

        function test_headingsStandOverTheirItems_data() {
            return [
                { tag: "TCP client", type: "TcpClientModule" },
                { tag: "TCP server", type: "TcpServerModule" },
                { tag: "UDP", type: "UdpModule" },
                { tag: "serial port", type: "SerialModule" },
                { tag: "PROFINET", type: "ProfinetModule" },
                { tag: "EtherNet/IP", type: "EipModule" }
            ]
        }
        function test_headingsStandOverTheirItems(data) {
            TestGateway.reset()
            var id = TestGateway.addModule(data.type, "dev")
            TestGateway.loadDevices()
            var groups = TestGateway.descriptionGroups(data.type)
            var panel = createTemporaryObject(panelComponent, page)
            panel.build(DevicesManager.getCurrentDeviceItems(id))
            var grid = findChild(panel, "paramGrid")
            verify(grid.children.length > 1)
            checkGrid(panel, groups, "as loaded")

            // Every value of every switch and drop-down, each in turn.
            for (var i = 0; i < grid.children.length; ++i) {
                var model = grid.children[i].pItemData
                if (findChild(grid.children[i], "booleanSwitch")) {
                    var was = model.curValue
                    model.curValue = !was
                    checkGrid(panel, groups, model.objectName + " " + !was)
                    model.curValue = was
                    checkGrid(panel, groups, model.objectName + " " + was)
                } else if (findChild(grid.children[i], "enumBox")) {
                    var index = model.curIndex
                    for (var e = 0; e < model.enums.length; ++e) {
                        model.curIndex = e
                        checkGrid(panel, groups, model.objectName + " " + model.enums[e])
                    }
                    model.curIndex = index
                }
            }
        }
    }
}
