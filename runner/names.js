// Names of the objects of the application, for scripts: find(names.saveButton).
//
// A name is an object of properties, or a text. It may refer to names above it:
//
//     names.mainWindow = {type: "QMainWindow", windowTitle: wildcard("Inventory*")};
//     names.saveButton = {text: "Save", window: names.mainWindow};
//
// Recording adds names above the line below.

// MORVEX_INSERT_OBJECT_NAMES_HERE
