classdef ncdataset < handle
  ## -*- texinfo -*-
  ## @deftypefn  {} {@var{ds} =} ncdataset (@var{path})
  ## @deftypefnx {} {@var{ds} =} ncdataset (@var{path}, 'a')
  ## @deftypefnx {} {@var{ds} =} ncdataset (@var{path}, 'c', 'Format', @var{format})
  ## A netCDF dataset: variables by name, 1-based subsets in Octave's order and CF
  ## decoding, over @code{netcdflib}.
  ##
  ## @code{ncdataset (@var{path})} opens a file (or an OPeNDAP or Zarr URL, whatever
  ## netCDF-C opens) read-only; mode @qcode{'a'} opens it for writing; mode @qcode{'c'}
  ## creates it, replacing a file of that name, in the format @qcode{'netcdf4'} (the
  ## default), @qcode{'netcdf4_classic'}, @qcode{'classic'}, @qcode{'64bit_offset'} or
  ## @qcode{'64bit_data'} (CDF5).
  ##
  ## Properties (read-only): @code{Path}, @code{Format}, @code{Dimensions} (struct
  ## array: Name, Length, Unlimited), @code{Variables} (struct array: Name, Datatype,
  ## Dimensions, Size, Attributes, FillValue, ChunkSize, Deflate, Shuffle),
  ## @code{Attributes} (global attributes: Name, Value) and @code{Groups} (names of the
  ## child groups).  Dimensions, sizes, starts, counts and strides are in Octave's order,
  ## the reverse of the file's.
  ##
  ## Methods: @code{read}, @code{write}, @code{attribute}, @code{setAttribute},
  ## @code{defineDimension}, @code{defineVariable}, @code{defineGroup}, @code{group},
  ## @code{disp}, @code{close}; @code{help ncdataset.read} and so on describe each.
  ## Define mode is entered and left as each call needs.  The file is closed by
  ## @code{close} or when the last object referring to it is cleared.
  ##
  ## Errors have identifiers beginning @qcode{"ncdataset:"}; when netcdflib raised the
  ## failure its identifier follows, as in
  ## @qcode{"ncdataset:QUARNA:imagesci:netcdf:libraryFailure"}.
  ##
  ## Example:
  ## @example
  ## ds = ncdataset ('sst.nc');
  ## [t, missing] = ds.read ('sst', [1 1 1], [Inf Inf 10]);
  ## ds.close ();
  ## @end example
  ## @end deftypefn

  properties (SetAccess = private)
    Path = '';
    Format = '';
  end

  properties (Dependent, SetAccess = private)
    Dimensions
    Variables
    Attributes
    Groups
  end

  properties (Access = private)
    Id = -1;            # ncid of this group
    Root = [];          # the dataset of the root group, for a child group
    IsOpen = false;     # state of the file, kept by the root
    InDefine = false;
  end

  methods
    function obj = ncdataset (path, mode, varargin)
      if (nargin == 0)
        error ('ncdataset:badArgument', 'ncdataset: a file name or URL is required');
      end
      if (! ischar (path) || ! isrow (path))
        error ('ncdataset:badArgument', 'ncdataset: PATH must be a character string');
      end
      if (nargin < 2)
        mode = 'r';
      end
      if (isa (mode, 'ncdataset'))
        ## A child group of an open file: ncdataset (PATH, ROOT, GROUP_ID).
        obj.Root = mode;
        obj.Id = varargin{1};
        obj.Path = mode.Path;
        obj.Format = mode.Format;
        return;
      end
      [~, opts] = ncoptions (varargin, struct ('Format', 'netcdf4'), 'ncdataset', true);
      if (! ischar (mode))
        error ('ncdataset:badArgument', 'ncdataset: MODE must be ''r'', ''a'' or ''c''');
      end
      switch (lower (mode))
        case 'r'
          obj.Id = nccall (sprintf ('opening "%s"', path), 'open', path, 'NC_NOWRITE');
        case 'a'
          obj.Id = nccall (sprintf ('opening "%s"', path), 'open', path, 'NC_WRITE');
        case 'c'
          obj.Id = nccall (sprintf ('creating "%s"', path), 'create', path, ...
                           create_mode (opts.Format));
          obj.InDefine = true;
        otherwise
          error ('ncdataset:badArgument', ...
                 'ncdataset: MODE must be ''r'', ''a'' or ''c'', not ''%s''', mode);
      end
      obj.IsOpen = true;
      obj.Path = path;
      obj.Format = format_name (obj.Id);
    end

    function delete (obj)
      ## Closes the file when the last object referring to it goes.
      if (isempty (obj.Root) && obj.IsOpen)
        obj.IsOpen = false;
        try
          netcdflib ('close', obj.Id);
        catch
        end
      end
    end

    function close (obj)
      ## -*- texinfo -*-
      ## @deftypefn {} {} close (@var{ds})
      ## Close the file of @var{ds} (pending definitions are ended first).  Every object
      ## of the same file, child groups included, is then closed; closing again does
      ## nothing.
      ## @end deftypefn
      r = obj.root ();
      if (r.IsOpen)
        r.IsOpen = false;
        nccall (sprintf ('closing "%s"', r.Path), 'close', r.Id);
      end
    end

    function v = get.Dimensions (obj)
      id = obj.ncid ();
      dimids = netcdflib ('inqDimIDs', id, false);
      unlim = netcdflib ('inqUnlimDims', id);
      v = struct ('Name', {}, 'Length', {}, 'Unlimited', {});
      for k = 1:numel (dimids)
        [name, len] = netcdflib ('inqDim', id, dimids(k));
        v(k) = struct ('Name', name, 'Length', len, 'Unlimited', any (unlim == dimids(k)));
      end
    end

    function v = get.Variables (obj)
      id = obj.ncid ();
      varids = netcdflib ('inqVarIDs', id);
      v = struct ('Name', {}, 'Datatype', {}, 'Dimensions', {}, 'Size', {}, ...
                  'Attributes', {}, 'FillValue', {}, 'ChunkSize', {}, 'Deflate', {}, ...
                  'Shuffle', {});
      for k = 1:numel (varids)
        v(k) = obj.describe (varids(k));
      end
    end

    function v = get.Attributes (obj)
      id = obj.ncid ();
      v = obj.attribute_list (netcdflib ('parameter', 'NC_GLOBAL'), ...
                              nth_output (3, 'inq', id));
    end

    function v = get.Groups (obj)
      id = obj.ncid ();
      v = {};
      if (any (strcmp (obj.Format, {'netcdf4'})))
        grps = netcdflib ('inqGrps', id);
        v = arrayfun (@(g) netcdflib ('inqGrpName', g), grps, 'UniformOutput', false);
      end
    end

    function [x, missing] = read (obj, name, varargin)
      ## -*- texinfo -*-
      ## @deftypefn  {} {@var{x} =} read (@var{ds}, @var{name})
      ## @deftypefnx {} {@var{x} =} read (@var{ds}, @var{name}, @var{start}, @var{count})
      ## @deftypefnx {} {@var{x} =} read (@var{ds}, @var{name}, @var{start}, @var{count}, @var{stride})
      ## @deftypefnx {} {[@var{x}, @var{missing}] =} read (@dots{}, 'Decode', @var{tf})
      ## Read variable @var{name}, whole or the subset from @var{start} (1-based) of
      ## @var{count} elements every @var{stride}, all in Octave's order; an element of
      ## @var{count} may be @code{Inf} for "to the end" (the default when @var{count} is
      ## left out).
      ##
      ## CF decoding is on unless 'Decode' is false: a signed integer variable with
      ## @code{_Unsigned = "true"} reads as its unsigned class; elements equal to
      ## @code{_FillValue} (without one, netCDF's default fill value, bytes excepted),
      ## or to any @code{missing_value}, or outside @code{valid_min},
      ## @code{valid_max} or @code{valid_range}, are missing; with @code{scale_factor} or
      ## @code{add_offset} the result is @code{stored * scale_factor + add_offset} in
      ## double (single when those attributes are single).  Missing elements of a
      ## floating-point result are NaN; an integer result keeps its values, and
      ## @var{missing} (a logical array of the size of @var{x}) marks them.
      ##
      ## Data of a user-defined type is read as netcdflib's "getVar" gives it (enum as
      ## its base class's integers, opaque as uint8 bytes-by-shape, compound as a struct
      ## of field arrays, vlen as cells) and is not decoded; @var{missing} is then all
      ## false in the shape of the selection.
      ## @end deftypefn
      [pos, opts] = ncoptions (varargin, struct ('Decode', true), 'read');
      if (numel (pos) > 3)
        error ('ncdataset:badArgument', 'read: too many arguments for variable "%s"', name);
      end
      v = obj.variable (name);
      call = {'getVar', v.ncid, v.varid};
      if (! isempty (pos))
        [start, count, stride] = subset (v, pos, 'read');
        if (isempty (stride))
          call = {'getVara', v.ncid, v.varid, start, count};
        else
          call = {'getVars', v.ncid, v.varid, start, count, stride};
        end
      end
      call{1} = [call{1} data_suffix(v.xtype)];
      obj.data_mode ();
      x = nccall (sprintf ('reading variable "%s"', name), call{:});
      cf = {};
      if (opts.Decode)
        cf = obj.cf_attributes (v);
      end
      if (isempty (cf))
        if (nargout > 1)
          missing = false (data_shape (v, x));
        end
        return;
      end
      if (nargout > 1)
        [x, missing] = __ncdataset_decode__ (x, cf{:});
      else
        x = __ncdataset_decode__ (x, cf{:});
      end
    end

    function write (obj, name, x, varargin)
      ## -*- texinfo -*-
      ## @deftypefn  {} {} write (@var{ds}, @var{name}, @var{x})
      ## @deftypefnx {} {} write (@var{ds}, @var{name}, @var{x}, @var{start})
      ## @deftypefnx {} {} write (@var{ds}, @var{name}, @var{x}, @var{start}, @var{stride})
      ## @deftypefnx {} {} write (@dots{}, 'Encode', @var{tf})
      ## Write @var{x} to variable @var{name} from @var{start} (1-based, Octave's order;
      ## all ones by default) every @var{stride}; the count is the size of @var{x}, and
      ## writing past the end of an unlimited dimension grows it.
      ##
      ## CF encoding is on unless 'Encode' is false: values are packed with
      ## @code{(x - add_offset) / scale_factor}, rounded to nearest for an integer
      ## variable, NaN becomes @code{_FillValue} (or netCDF's default fill), values
      ## outside the stored type's range are an error, and a variable with
      ## @code{_Unsigned = "true"} takes its unsigned class.
      ## @end deftypefn
      [pos, opts] = ncoptions (varargin, struct ('Encode', true), 'write');
      if (numel (pos) > 2)
        error ('ncdataset:badArgument', 'write: too many arguments for variable "%s"', name);
      end
      v = obj.variable (name);
      if (opts.Encode)
        x = obj.encode (v, x);
      elseif (v.xtype != 2 && v.xtype <= 11)
        x = cast_checked (x, type_row (v.xtype).class, v.name);   # the stored class, as is
      end
      r = numel (v.dimids);
      sz = data_shape (v, x);
      if (r == 1)
        if (nnz (sz != 1) > 1 && all (sz))
          error ('ncdataset:badArgument', ...
                 'write: the data for variable "%s" of one dimension must be a vector', name);
        end
        count = prod (sz);
      else
        count = [sz, ones(1, r - numel (sz))];
        if (any (count(r+1:end) != 1))
          error ('ncdataset:badArgument', ...
                 'write: the data for variable "%s" has more dimensions than its %d', name, r);
        end
        count = count(1:r);
      end
      start = ones (1, r);
      stride = [];
      if (numel (pos) >= 1)
        start = index_vector (pos{1}, r, 'START', name, 'write');
      end
      if (numel (pos) >= 2)
        stride = index_vector (pos{2}, r, 'STRIDE', name, 'write');
      end
      call = {'Vara', v.ncid, v.varid, start - 1, count, x};
      if (! isempty (stride))
        call = {'Vars', v.ncid, v.varid, start - 1, count, stride, x};
      end
      if (r == 0)
        call = {'Var', v.ncid, v.varid, x};
      end
      call{1} = ['put' call{1} data_suffix(v.xtype)];
      obj.data_mode ();
      nccall (sprintf ('writing variable "%s"', name), call{:});
    end

    function value = attribute (obj, varname, attname)
      ## -*- texinfo -*-
      ## @deftypefn {} {@var{value} =} attribute (@var{ds}, @var{varname}, @var{attname})
      ## The value of attribute @var{attname} of variable @var{varname} ('' for a global
      ## attribute), as stored: text as char, strings as a cell of char rows, numbers in
      ## the class of their type, user-defined types in their own form as netcdflib's
      ## "getAtt" gives them.
      ## @end deftypefn
      [id, varid, what] = obj.owner (varname);
      value = read_attribute (id, varid, attname, what);
    end

    function setAttribute (obj, varname, attname, value)
      ## -*- texinfo -*-
      ## @deftypefn {} {} setAttribute (@var{ds}, @var{varname}, @var{attname}, @var{value})
      ## Set attribute @var{attname} of variable @var{varname} ('' for a global attribute).
      ## The class of @var{value} picks the type: char is text, a cell of char rows is
      ## strings, a numeric class its own type (double is double, int16 is short, ...).
      ## @end deftypefn
      [id, varid, what] = obj.owner (varname);
      obj.define_mode ();
      write_attribute (id, varid, attname, value, what);
    end

    function defineDimension (obj, name, len)
      ## -*- texinfo -*-
      ## @deftypefn {} {} defineDimension (@var{ds}, @var{name}, @var{length})
      ## Define dimension @var{name} of @var{length} elements, or unlimited when
      ## @var{length} is @code{Inf}.
      ## @end deftypefn
      if (! (isnumeric (len) && isscalar (len) && len >= 0 && (isinf (len) || len == fix (len))))
        error ('ncdataset:badArgument', ...
               'defineDimension: the length of "%s" must be a whole number or Inf', name);
      end
      if (isinf (len))
        len = netcdflib ('parameter', 'NC_UNLIMITED');
      end
      id = obj.ncid ();
      obj.define_mode ();
      nccall (sprintf ('defining dimension "%s"', name), 'defDim', id, name, len);
    end

    function defineVariable (obj, name, datatype, dims, varargin)
      ## -*- texinfo -*-
      ## @deftypefn {} {} defineVariable (@var{ds}, @var{name}, @var{datatype}, @var{dims}, @dots{})
      ## Define variable @var{name} of @var{datatype} (an Octave class such as
      ## 'double' or 'int16', 'char', 'string', or 'vlen:NAME' for an existing vlen type)
      ## over the dimensions named in @var{dims} (a cell, Octave's order; @{@} for a
      ## scalar).  Options: 'Deflate' (level 0-9), 'Shuffle' (logical), 'Chunks' (chunk
      ## lengths, Octave's order), 'FillValue' and 'Attributes' (a cell of names and
      ## values).
      ## @end deftypefn
      [~, opts] = ncoptions (varargin, struct ('Deflate', 0, 'Shuffle', false, 'Chunks', [], ...
                                          'FillValue', [], 'Attributes', {{}}), ...
                        'defineVariable', true);
      id = obj.ncid ();
      if (ischar (dims))
        dims = {dims};
      end
      if (! iscellstr (dims))
        error ('ncdataset:badArgument', ...
               'defineVariable: DIMS of "%s" must be a cell of dimension names', name);
      end
      what = sprintf ('defining variable "%s"', name);
      xtype = obj.type_id (datatype, name);
      dimids = zeros (1, numel (dims));
      for k = 1:numel (dims)
        dimids(k) = nccall (sprintf ('%s: dimension "%s"', what, dims{k}), ...
                            'inqDimID', id, dims{k});
      end
      obj.define_mode ();
      varid = nccall (what, 'defVar', id, name, xtype, dimids);
      if (! isempty (opts.Chunks))
        nccall (what, 'defVarChunking', id, varid, netcdflib ('parameter', 'NC_CHUNKED'), ...
                double (opts.Chunks));
      end
      if (opts.Deflate > 0 || opts.Shuffle)
        nccall (what, 'defVarDeflate', id, varid, logical (opts.Shuffle), ...
                opts.Deflate > 0, double (opts.Deflate));
      end
      if (! isempty (opts.FillValue))
        fill = opts.FillValue;
        if (xtype <= 12)
          fill = cast_checked (fill, type_row (xtype).class, name);
        end
        nccall (what, 'defVarFill', id, varid, false, fill);
      end
      atts = opts.Attributes;
      if (! iscell (atts) || mod (numel (atts), 2))
        error ('ncdataset:badArgument', ...
               'defineVariable: ''Attributes'' of "%s" must be a cell of names and values', name);
      end
      for k = 1:2:numel (atts)
        write_attribute (id, varid, atts{k}, atts{k+1}, sprintf ('variable "%s"', name));
      end
    end

    function g = defineGroup (obj, name)
      ## -*- texinfo -*-
      ## @deftypefn {} {@var{g} =} defineGroup (@var{ds}, @var{name})
      ## Define child group @var{name} (netCDF-4 files only) and return it as a dataset.
      ## @end deftypefn
      id = obj.ncid ();
      obj.define_mode ();
      gid = nccall (sprintf ('defining group "%s"', name), 'defGrp', id, name);
      g = ncdataset (obj.Path, obj.root (), gid);
    end

    function g = group (obj, name)
      ## -*- texinfo -*-
      ## @deftypefn {} {@var{g} =} group (@var{ds}, @var{name})
      ## Child group @var{name} as a dataset of the same open file.
      ## @end deftypefn
      id = obj.ncid ();
      if (! strcmp (obj.Format, 'netcdf4'))
        ## netCDF-C answers a classic file's own id for any group name.
        error ('ncdataset:noGroup', 'group "%s": a file of format %s has no groups', ...
               name, obj.Format);
      end
      gid = nccall (sprintf ('group "%s"', name), 'inqNcid', id, name);
      g = ncdataset (obj.Path, obj.root (), gid);
    end

    function disp (obj)
      ## -*- texinfo -*-
      ## @deftypefn {} {} disp (@var{ds})
      ## Print a summary of @var{ds} in the form of @code{ncdump -h}: dimensions,
      ## variables with their types, dimensions and attributes, and child groups.
      ## @end deftypefn
      r = obj.root ();
      if (! r.IsOpen)
        printf ('  ncdataset of "%s" (closed)\n', obj.Path);
        return;
      end
      if (isempty (obj.Root))
        [~, name] = fileparts (obj.Path);
      else
        name = netcdflib ('inqGrpName', obj.Id);
      end
      fputs (stdout, __ncdataset_header__ (obj.Id, name, isempty (obj.Root)));
    end
  end

  methods (Access = private)
    function r = root (obj)
      if (isempty (obj.Root))
        r = obj;
      else
        r = obj.Root;
      end
    end

    function id = ncid (obj)
      if (! obj.root ().IsOpen)
        error ('ncdataset:closed', 'ncdataset: "%s" is closed', obj.Path);
      end
      id = obj.Id;
    end

    function define_mode (obj)
      r = obj.root ();
      if (! r.InDefine)
        nccall (sprintf ('entering define mode of "%s"', r.Path), 'redef', r.Id);
        r.InDefine = true;
      end
    end

    function data_mode (obj)
      r = obj.root ();
      if (r.InDefine)
        nccall (sprintf ('ending the definitions of "%s"', r.Path), 'endDef', r.Id);
        r.InDefine = false;
      end
    end

    function v = variable (obj, name)
      ## What reads and writes need of a variable: ids, type, dimension ids (Octave's order).
      id = obj.ncid ();
      if (! ischar (name) || ! (isrow (name) || isempty (name)))
        error ('ncdataset:badArgument', 'ncdataset: a variable name must be a character string');
      end
      try
        varid = netcdflib ('inqVarID', id, name);
      catch err
        error (['ncdataset:' err.identifier], 'no variable "%s" in "%s": %s', ...
               name, obj.Path, err.message);
      end
      [~, xtype, dimids, natts] = netcdflib ('inqVar', id, varid);
      v = struct ('ncid', id, 'varid', varid, 'name', name, 'xtype', xtype, ...
                  'dimids', dimids, 'natts', natts);
    end

    function s = describe (obj, varid)
      id = obj.Id;
      [name, xtype, dimids, natts] = netcdflib ('inqVar', id, varid);
      n = numel (dimids);
      dnames = cell (1, n);
      lens = zeros (1, n);
      for k = 1:n
        [dnames{k}, lens(k)] = netcdflib ('inqDim', id, dimids(k));
      end
      chunks = [];
      deflate = 0;
      shuffle = false;
      fill = [];
      if (any (strcmp (obj.Format, {'netcdf4', 'netcdf4_classic'})))
        [storage, c] = netcdflib ('inqVarChunking', id, varid);
        if (strcmpi (storage, 'chunked'))
          chunks = c(:)';
        end
        [shuffle, on, level] = netcdflib ('inqVarDeflate', id, varid);
        deflate = double (on) * double (level);
        shuffle = logical (shuffle);
      end
      if (xtype <= 12 && xtype != 12)
        [nofill, f] = netcdflib ('inqVarFill', id, varid);
        if (! nofill)
          fill = f;
        end
      end
      s = struct ('Name', name, 'Datatype', type_name (id, xtype), 'Dimensions', {dnames}, ...
                  'Size', lens, 'Attributes', obj.attribute_list (varid, natts), ...
                  'FillValue', fill, 'ChunkSize', chunks, 'Deflate', deflate, ...
                  'Shuffle', shuffle);
    end

    function a = attribute_list (obj, varid, natts)
      a = struct ('Name', cell (1, natts), 'Value', []);
      what = 'global attribute';
      if (varid >= 0)
        what = sprintf ('attribute of variable %d', varid);
      end
      for k = 1:natts
        a(k).Name = netcdflib ('inqAttName', obj.Id, varid, k - 1);
        a(k).Value = read_attribute (obj.Id, varid, a(k).Name, what);
      end
    end

    function [id, varid, what] = owner (obj, varname)
      id = obj.ncid ();
      if (isempty (varname))
        varid = netcdflib ('parameter', 'NC_GLOBAL');
        what = 'global attribute';
      else
        varid = obj.variable (varname).varid;
        what = sprintf ('variable "%s"', varname);
      end
    end

    function cf = cf_attributes (obj, v)
      ## The decode kernel's arguments, or {} for a type that is not decoded. Without a
      ## _FillValue, netCDF's default fill marks missing elements (bytes excepted, as
      ## their default fill is an ordinary value), as it marks elements never written.
      cf = {};
      if (v.xtype == 2 || v.xtype > 11)
        return;
      end
      names = {'_FillValue', 'missing_value', 'valid_min', 'valid_max', 'valid_range', ...
               'scale_factor', 'add_offset', '_Unsigned'};
      vals = cell (1, numel (names));
      for k = 0:v.natts - 1
        att = netcdflib ('inqAttName', v.ncid, v.varid, k);
        j = find (strcmp (att, names), 1);
        if (! isempty (j))
          vals{j} = read_attribute (v.ncid, v.varid, att, sprintf ('variable "%s"', v.name));
        end
      end
      if (isempty (vals{1}) && ! any (v.xtype == [1 7]))
        vals{1} = netcdflib ('parameter', type_row (v.xtype).fill);
      end
      unsigned = any (v.xtype == [1 3 4 10]) && ischar (vals{8}) && strcmpi (vals{8}, 'true');
      vmin = vals{3};
      vmax = vals{4};
      if (numel (vals{5}) == 2)
        if (isempty (vmin))
          vmin = vals{5}(1);
        end
        if (isempty (vmax))
          vmax = vals{5}(2);
        end
      end
      cf = {unsigned, vals(1:2), vmin, vmax, vals{6}, vals{7}};
    end

    function x = encode (obj, v, x)
      ## The inverse of decoding: unpack, round, check the range, NaN to the fill value.
      if (v.xtype == 2 || v.xtype > 11)
        return;
      end
      cf = obj.cf_attributes (v);
      t = type_row (v.xtype);
      cls = t.class;
      [unsigned, missing, ~, ~, scale, offset] = cf{:};
      if (unsigned)
        cls = ['u' cls];
      end
      isint = ! any (strcmp (cls, {'single', 'double'}));
      nan_at = [];
      if (isfloat (x))
        nan_at = isnan (x);
        if (! any (nan_at(:)))
          nan_at = [];
        end
      end
      if (! isempty (scale) || ! isempty (offset))
        x = double (x);
        if (! isempty (offset))
          x = x - double (offset);
        end
        if (! isempty (scale))
          x = x ./ double (scale);
        end
        if (isint)
          x = round (x);
        end
      end
      if (! isempty (nan_at))
        fill = missing{1};
        if (isempty (fill))
          fill = netcdflib ('parameter', t.fill);
        end
        if (unsigned && isinteger (fill))
          fill = typecast (fill(1), cls);
        end
        x(nan_at) = fill(1);
      end
      x = cast_checked (x, cls, v.name);
      if (unsigned)
        x = reshape (typecast (x(:), t.class), size (x));
      end
    end

    function xtype = type_id (obj, datatype, name)
      if (! ischar (datatype))
        error ('ncdataset:badArgument', ...
               'defineVariable: DATATYPE of "%s" must be a character string', name);
      end
      xtype = find (strcmp (datatype, {type_table().class}), 1);
      if (isempty (xtype) && any (datatype == ':'))
        xtype = user_type_id (obj.Id, datatype);
      end
      if (isempty (xtype))
        error ('ncdataset:badType', 'defineVariable: unknown DATATYPE ''%s'' for "%s"', ...
               datatype, name);
      end
    end
  end
end
