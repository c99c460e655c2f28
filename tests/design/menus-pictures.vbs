
Dim image, all
For Each image In imlMenus.ListImages
    all = all & " " & image.Key
Next
Host.Log "Pictures:" & all
