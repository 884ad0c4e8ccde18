import QtQuick 2.15

// Fixed PROFINET addresses of the device (the dialog comes with the address
// views; the row holds its place in the parameter panel).
ItemRow {
    id: root
}
