
Host.Log "Pictures: " & ImageList1.ListImages.Count & " " & ImageList1.ListImages(1).Key & " " & _
    (ImageList1.ListImages(1).Picture.Width > 0)
