// Numbers of the component server's resources.
#pragma once

#define QVX_TOOLBOX_COMBOGRID 101
#define QVX_TOOLBOX_BUTTON 102
#define QVX_TOOLBOX_RBUTTON 104
#define QVX_TOOLBOX_TEXTEDIT 103
#define QVX_TOOLBOX_BACKUP 105
#define QVX_TOOLBOX_FLATBORDER 106
#define QVX_TOOLBOX_CMENUS 107
