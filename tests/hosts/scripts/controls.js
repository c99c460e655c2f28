// Every control, late bound, in the system's script host: cscript controls.js

function same(name, got, wanted) {
    WScript.Echo(String(got) === String(wanted) ? "ok " + name
        : "FAILED " + name + ': "' + got + '" instead of "' + wanted + '"');
}

function checkProperties() {
    var settings = [["Button", "Caption", "&Save"], ["Button", "Behavior", 2], ["RButton", "ForeColor", 255],
        ["TextEdit", "Text", "abc"], ["TextEdit", "MinValue", 1.5], ["Backup", "CheckSecurity", true],
        ["FlatBorder", "InnerBorder", 255], ["CMenus", "ImageList", "imlMenus"], ["ComboGrid", "Rows", 5]];
    for (var i = 0; i < settings.length; i++) {
        var control = new ActiveXObject("Qvx." + settings[i][0]), member = settings[i][1];
        control[member] = settings[i][2];
        same(settings[i][0] + "." + member + " keeps its value", control[member], settings[i][2]);
    }
}

function checkGrid() {
    var grid = new ActiveXObject("Qvx.ComboGrid");
    grid.FormatString = "|<Article|>Pieces";
    grid.RefreshColIndex();
    grid.Rows = 3;
    grid.TextMatrix(1, 1) = "Desk";
    grid.TextMatrix(1, 2) = 45;
    same("an indexed property is set and read", grid.TextMatrix(1, 1) + grid.TextMatrix(1, 2), "Desk45");
    same("a column is found by its header text", grid.ColIndex.Item("Pieces"), 2);
    same("a column is added up", grid.GetSumOf(1, 2), 45);
    same("the next column is found", grid.GetNextColumn(1), 1);
    same("an inner object has its members", grid.Grid().Cols, 3);
}

function checkErrors() {
    try {
        same("an error is an exception", new ActiveXObject("Qvx.ComboGrid").Lists(1), "an exception");
    } catch (error) {
        same("an error is an exception with its text", error.message, "Not a valid ListColum Index.");
        same("an error is an exception with its number", error.number & 0xFFFF, 9);
    }
}

checkProperties();
checkGrid();
checkErrors();
WScript.Echo("done");
