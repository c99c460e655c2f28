// The same in JScript. Names are exactly those of the form, and a value returned from a handler is its answer.
function Form_Load() {
    txtName.Text = "World";
}

function cmdGreet_Click() {
    lblGreeting.Caption = "Hello, " + txtName.Text + "!";
    Host.Log(lblGreeting.Caption);
}
