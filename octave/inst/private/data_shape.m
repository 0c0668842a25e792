function sz = data_shape (v, x)
  ## The shape of the selection data X of variable V fills (at least two sizes): size (X),
  ## less the leading bytes of opaque data, and for compound data (a struct of field
  ## arrays) the shape of its first numeric or cell field less that field's own sizes.
  sz = size (x);
  if (v.xtype > 12)
    [~, ~, ~, nfields, cls] = netcdflib ('inqUserType', v.ncid, v.xtype);
    if (cls == 14)
      sz = sz(2:end);
    elseif (cls == 16 && isstruct (x) && isscalar (x))
      names = fieldnames (x);
      for k = 1:min (nfields, numel (names))
        y = x.(names{k});
        if (! (isstruct (y) || ischar (y)))
          [~, ~, ~, dims] = netcdflib ('inqCompoundField', v.ncid, v.xtype, k - 1);
          sz = size (y)(numel (dims)+1:end);
          break;
        end
      end
    end
  end
  sz = [sz, ones(1, 2 - numel (sz))];
end
